// Asks which Schedule Events shall have.
#pragma once

#include <string>
#include <vector>

#include "model/schedule_list.h"
#include "ui/dialog.h"

namespace orvc {

// Thread: user-interface thread. The Schedules are copied.
class AssignScheduleDialog final : public ui::Dialog {
  public:
    // Offers every Schedule that can be used, but for the one with the key `except`. An empty `question` leaves the
    // dialog's own text.
    AssignScheduleDialog(const ui::Resources& resources, const ScheduleList& schedules, std::string question = {},
                         const std::string& except = {});

    // True when one was chosen.
    bool run(HWND owner) { return runModal(owner) == IDOK; }
    const std::string& key() const { return choices_.at(chosen_).key; }

  private:
    struct Choice {
        std::string key;
        std::string name;
    };

    bool onInit() override;
    bool onCommand(unsigned id, unsigned notification) override;

    std::string question_;
    std::vector<Choice> choices_;
    std::size_t chosen_ = 0;
};

}  // namespace orvc
