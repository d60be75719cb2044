// The answer to a subscription: every key and value below a path.
#include <algorithm>
#include <cstdint>
#include <random>

#include "demo_server/core/runs.h"

namespace orvc::demo {
namespace {

constexpr std::string_view kSettingsMark = "completeBits";
constexpr std::string_view kSettingsPath = "\\ORVS\\";

// Items of a key are numbered: 0 is the key itself, 1 its first value, and so on.
class VariablesRun : public Run {
  public:
    VariablesRun(std::string path, const SubscriptionManner& manner) : path_(std::move(path)), manner_(manner) {}

    bool fill(Batch& batch, const Installation& installation, Millis now) final {
        if (manner_.slow == 0) return tell(batch, installation.variables, SIZE_MAX);
        if (due_ != 0 && tell(batch, installation.variables, batch.size() + 1)) return true;
        due_ = now + manner_.slow;
        return false;
    }
    Millis due() const final { return due_; }

  protected:
    const std::string& path() const { return path_; }

    // Tells items until the batch is full or has `stopSize` entries; true when there is none left.
    virtual bool tell(Batch& batch, const VariableTree& variables, std::size_t stopSize) = 0;

    static bool mayTell(const Batch& batch, std::size_t stopSize) { return batch.size() < stopSize && !batch.full(); }

    void tellItem(Batch& batch, const VariableTree& variables, const std::string& path, const VariableTree::Key& key,
                  std::size_t item) const {
        if (item == 0) {
            if (key.created) batch.addName(VariableTree::keyName(path), variable_type::kKey);
            return;
        }
        const VariableTree::Value& value = key.values[item - 1];
        const std::string_view field = variables.fieldName(value.field);
        if (manner_.withoutSettingsMark && path == kSettingsPath && field == kSettingsMark) return;
        if (value.isString) {
            batch.addString(path, field, value.type(), value.text);
        } else {
            batch.addDword(path, field, value.type(), value.number);
        }
    }

  private:
    const std::string path_;
    const SubscriptionManner manner_;
    Millis due_ = 0;
};

// In the order of the tree. The place is kept by path and number, so that the tree may change between two batches.
class OrderedRun final : public VariablesRun {
  public:
    OrderedRun(std::string path, const SubscriptionManner& manner)
        : VariablesRun(std::move(path), manner), current_(this->path()) {}

  private:
    bool tell(Batch& batch, const VariableTree& variables, std::size_t stopSize) override {
        const auto& keys = variables.keys();
        auto entry = keys.lower_bound(current_);
        if (entry != keys.end() && entry->first != current_) item_ = 0;
        for (; entry != keys.end() && entry->first.starts_with(path()); ++entry, item_ = 0) {
            while (item_ <= entry->second.values.size()) {
                if (!mayTell(batch, stopSize)) {
                    current_ = entry->first;
                    return false;
                }
                tellItem(batch, variables, entry->first, entry->second, item_++);
            }
        }
        return true;
    }

    std::string current_;
    std::size_t item_ = 0;
};

// In an order drawn when the run begins. Items that are gone when their turn comes are left out; what came new is told
// by its own notification anyway.
class ShuffledRun final : public VariablesRun {
  public:
    ShuffledRun(std::string path, const SubscriptionManner& manner, std::uint32_t seed)
        : VariablesRun(std::move(path), manner), seed_(seed) {}

  private:
    struct Item {
        std::uint32_t path;
        std::uint32_t item;
    };

    bool tell(Batch& batch, const VariableTree& variables, std::size_t stopSize) override {
        if (!drawn_) draw(variables);
        for (; next_ < order_.size(); ++next_) {
            if (!mayTell(batch, stopSize)) return false;
            const Item& next = order_[next_];
            const auto entry = variables.keys().find(paths_[next.path]);
            if (entry != variables.keys().end() && next.item <= entry->second.values.size()) {
                tellItem(batch, variables, entry->first, entry->second, next.item);
            }
        }
        return true;
    }

    void draw(const VariableTree& variables) {
        const auto& keys = variables.keys();
        for (auto entry = keys.lower_bound(path()); entry != keys.end() && entry->first.starts_with(path()); ++entry) {
            const auto pathNumber = static_cast<std::uint32_t>(paths_.size());
            paths_.push_back(entry->first);
            for (std::uint32_t item = 0; item <= entry->second.values.size(); ++item) {
                order_.push_back({pathNumber, item});
            }
        }
        std::mt19937 random(seed_);
        std::shuffle(order_.begin(), order_.end(), random);
        drawn_ = true;
    }

    const std::uint32_t seed_;
    bool drawn_ = false;
    std::vector<std::string> paths_;
    std::vector<Item> order_;
    std::size_t next_ = 0;
};

}  // namespace

RunPointer makeVariablesRun(std::string path, const SubscriptionManner& manner) {
    if (manner.shuffleSeed) return std::make_unique<ShuffledRun>(std::move(path), manner, *manner.shuffleSeed);
    return std::make_unique<OrderedRun>(std::move(path), manner);
}

}  // namespace orvc::demo
