#include "dialogs/setup_event_dialog.h"

#include <algorithm>
#include <iterator>

#include "dialogs/configure_schedules_dialog.h"
#include "dialogs/setup_email_dialog.h"
#include "dialogs/setup_server_audio_dialog.h"
#include "dialogs/setup_tts_dialog.h"
#include "dialogs/setup_tts_filename_dialog.h"
#include "editors/event/event_entry.h"
#include "editors/event/save_warnings.h"
#include "model/guid.h"
#include "resources/resource.h"
#include "ui/controls.h"
#include "win32/new_guid.h"

namespace orvc {
namespace {

// Timers: the fetch starts once the editor is on the screen, and is then looked after.
constexpr UINT_PTR kFetchSpokenText = 10;
constexpr UINT_PTR kPollSpokenText = 11;
constexpr UINT_PTR kFetchEmail = 20;
constexpr UINT_PTR kPollEmail = 21;
constexpr UINT_PTR kFootTimer = 30;
constexpr UINT kFetchPeriod = 100;  // milliseconds
constexpr UINT kPollPeriod = 10;

// What is not searched comes first.
constexpr std::array kDropDowns{IDC_EVENT_TRIGGER,  IDC_EVENT_TIMEOUT,  IDC_EVENT_TIMEOUT_VALUE, IDC_EVENT_TIMEOUT_UNIT,
                                IDC_EVENT_SCHEDULE, IDC_EVENT_RESPONSE, IDC_EVENT_SOURCE,        IDC_EVENT_DESTINATION};

}  // namespace

CSetupEventDlg::CSetupEventDlg(const EventEditorParts& parts, const EventRecord* event)
    : Dialog(parts.resources, IDD_SETUP_EVENT),
      parts_(parts),
      opened_(event != nullptr ? std::optional(*event) : std::nullopt),
      key_(event != nullptr ? event->key : std::string()),
      form_(parts.resources, parts.directory, parts.schedules),
      fetcher_(parts.link, parts.fileReader, parts.log, parts.clock),
      pleaseWait_(parts.resources, IDS_WAIT_UPDATING),
      sourceSearch_(parts.foldText),
      destinationSearch_(parts.foldText) {}

bool CSetupEventDlg::run(HWND owner) {
    return runModal(owner) == IDOK;
}

// ---------------------------------------------------------------------------------------------------------------------
// Opening

bool CSetupEventDlg::onInit() {
    foot_.attach(control(IDC_EVENT_FOOT));
    fillFixedLists();
    attachKeys();
    LoadResult loaded;
    if (opened_) {
        SetWindowTextA(window(), parts_.resources.text(IDS_MODIFY_EVENT).c_str());
        loaded = form_.load(*opened_);
    }
    showForm();
    centerOn(GetParent(window()));
    SetTimer(window(), kFootTimer, kLinkNotePeriod, nullptr);
    for (const LoadMessage& message : loaded.messages) {
        if (isEnding()) return true;
        ui::showMessage(window(), parts_.resources.text(message.text), parts_.resources.text(message.caption));
    }
    if (loaded.fetch == PayloadKind::kSpokenText) SetTimer(window(), kFetchSpokenText, kFetchPeriod, nullptr);
    if (loaded.fetch == PayloadKind::kEmail) SetTimer(window(), kFetchEmail, kFetchPeriod, nullptr);
    return true;
}

void CSetupEventDlg::fillFixedLists() {
    ui::fillDropDown(control(IDC_EVENT_TRIGGER), listTriggers(parts_.resources), 0);
    ui::fillDropDown(control(IDC_EVENT_TIMEOUT), listTimeouts(parts_.resources), 0);
    ui::fillDropDown(control(IDC_EVENT_TIMEOUT_VALUE), listTimeoutValues(), 0);
    ui::fillDropDown(control(IDC_EVENT_TIMEOUT_UNIT), listTimeoutUnits(parts_.resources), 0);
}

void CSetupEventDlg::attachKeys() {
    for (std::size_t i = 0; i < kDropDowns.size(); ++i) {
        const unsigned id = kDropDowns[i];
        if (id == IDC_EVENT_SOURCE)
            attachSearch(id, sourceSearch_, keys_[i]);
        else if (id == IDC_EVENT_DESTINATION)
            attachSearch(id, destinationSearch_, keys_[i]);
        else
            keys_[i].attach(control(id));
    }
}

void CSetupEventDlg::attachSearch(unsigned id, PlaceSearch& search, ui::DropDownKeys& keys) {
    keys.attach(control(id), {[&search](char c, int current) { return search.type(c, GetTickCount(), current); },
                              [&search] { return search.isTyping(GetTickCount()); }});
}

std::vector<SearchText> CSetupEventDlg::searchedSources() const {
    std::vector<SearchText> texts;
    if (form_.sourceKind() == SourceKind::kPlaces) {
        std::ranges::transform(form_.sources(), std::back_inserter(texts), searchTextOf);
    } else {
        for (const std::string& text : form_.otherSources())
            texts.push_back({text, {}});
    }
    return texts;
}

// Everything that the form holds, for the first time.
void CSetupEventDlg::showForm() {
    showing_ = true;
    showText(IDC_EVENT_NAME, form_.name());
    CheckDlgButton(window(), IDC_EVENT_DISABLED, form_.isDisabled() ? BST_CHECKED : BST_UNCHECKED);
    showing_ = false;
    showLists();
}

// Fills the lists whose contents changed, and selects in all of them what the form has chosen.
void CSetupEventDlg::showLists() {
    const auto choose = [this](unsigned id, std::int64_t index) { ui::selectEntry(control(id), index); };
    showing_ = true;
    if (std::exchange(shownSources_, form_.sourceRevision()) != form_.sourceRevision()) {
        sourceSearch_.reset([this] { return searchedSources(); });
        if (form_.sourceKind() == SourceKind::kServer || form_.sourceKind() == SourceKind::kTimesOfDay)
            ui::fillDropDown(control(IDC_EVENT_SOURCE), form_.otherSources(), form_.sourceIndex());
        else
            ui::fillDropDown(control(IDC_EVENT_SOURCE), form_.sources(), form_.sourceIndex(), &Place::text);
    }
    if (std::exchange(shownSchedules_, form_.scheduleRevision()) != form_.scheduleRevision())
        ui::fillDropDown(control(IDC_EVENT_SCHEDULE), form_.schedules(), form_.scheduleIndex(), &ScheduleChoice::name);
    if (std::exchange(shownResponses_, form_.responseRevision()) != form_.responseRevision())
        ui::fillDropDown(control(IDC_EVENT_RESPONSE), form_.responseTexts(), form_.responseIndex());
    if (std::exchange(shownDestinations_, form_.destinationRevision()) != form_.destinationRevision()) {
        ui::fillDropDown(control(IDC_EVENT_DESTINATION), form_.destinations(), form_.destinationIndex(), &Place::text);
        destinationSearch_.reset([this] {
            std::vector<SearchText> texts;
            std::ranges::transform(form_.destinations(), std::back_inserter(texts), searchTextOf);
            return texts;
        });
    }
    choose(IDC_EVENT_TRIGGER, form_.triggerIndex());
    choose(IDC_EVENT_SOURCE, form_.sourceIndex());
    choose(IDC_EVENT_TIMEOUT, form_.timeoutIndex());
    choose(IDC_EVENT_TIMEOUT_VALUE, form_.timeoutValue());
    choose(IDC_EVENT_TIMEOUT_UNIT, form_.timeoutUnit());
    choose(IDC_EVENT_SCHEDULE, form_.scheduleIndex());
    choose(IDC_EVENT_RESPONSE, form_.responseIndex());
    choose(IDC_EVENT_DESTINATION, form_.destinationIndex());
    showText(IDC_EVENT_RESPONSE_LINE, form_.responseLine());
    showing_ = false;
    showEnabling();
}

void CSetupEventDlg::showEnabling() {
    const EventFormEnabling enabled = form_.enabling();
    const HWND focus = GetFocus();
    enable(IDC_EVENT_TRIGGER, enabled.trigger);
    enable(IDC_EVENT_SOURCE, enabled.source);
    enable(IDC_EVENT_TIMEOUT, enabled.timeout);
    enable(IDC_EVENT_TIMEOUT_VALUE, enabled.timeoutValueAndUnit);
    enable(IDC_EVENT_TIMEOUT_UNIT, enabled.timeoutValueAndUnit);
    enable(IDC_EVENT_SCHEDULE, enabled.schedule);
    enable(IDC_EVENT_RESPONSE, enabled.response);
    enable(IDC_EVENT_DESTINATION, enabled.destination);
    enable(IDC_EVENT_SELECT, enabled.select);
    enable(IDOK, enabled.save);
    // The keyboard stays with a control that can take it.
    if (focus != nullptr && GetParent(focus) == window() && !IsWindowEnabled(focus))
        SendMessageA(window(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control(IDC_EVENT_NAME)), TRUE);
    showFoot();
}

// The lost link, and what saving would change.
void CSetupEventDlg::showFoot() {
    foot_.show(joinSentences(parts_.linkNote(), textOf(warningsFor(form_, opened_), parts_.resources)));
}

// ---------------------------------------------------------------------------------------------------------------------
// What the operator does

bool CSetupEventDlg::onCommand(unsigned id, unsigned notification) {
    if (showing_) return true;
    switch (id) {
        case IDC_EVENT_NAME:
            if (!ui::isEditChange(notification)) return true;
            form_.setName(readText(IDC_EVENT_NAME));
            showEnabling();
            return true;
        case IDC_EVENT_DISABLED:
            form_.setDisabled(IsDlgButtonChecked(window(), IDC_EVENT_DISABLED) == BST_CHECKED);
            return true;
        case IDC_EVENT_SCHEDULES:
            editSchedules();
            return true;
        case IDC_EVENT_SELECT:
            select();
            return true;
        case IDOK:
            if (IsWindowEnabled(control(IDOK))) save();
            return true;
        case IDCANCEL:
            endDialog(IDCANCEL);
            return true;
        default:
            return ui::isSelectionChange(notification) && onListChange(id);
    }
}

bool CSetupEventDlg::onListChange(unsigned id) {
    const int index = ui::selectedEntry(control(id));
    switch (id) {
        case IDC_EVENT_TRIGGER:
            form_.chooseTrigger(index);
            break;
        case IDC_EVENT_SOURCE:
            form_.chooseSource(index);
            break;
        case IDC_EVENT_TIMEOUT:
            form_.chooseTimeout(index);
            break;
        case IDC_EVENT_TIMEOUT_VALUE:
            form_.chooseTimeoutValue(index);
            break;
        case IDC_EVENT_TIMEOUT_UNIT:
            form_.chooseTimeoutUnit(index);
            break;
        case IDC_EVENT_SCHEDULE:
            form_.chooseSchedule(index);
            break;
        case IDC_EVENT_RESPONSE:
            form_.chooseResponse(index);
            break;
        case IDC_EVENT_DESTINATION:
            form_.chooseDestination(index);
            break;
        default:
            return false;
    }
    showLists();
    return true;
}

void CSetupEventDlg::select() {
    switch (form_.response()) {
        case Response::kServerAudio:
            selectAudio();
            break;
        case Response::kTtsFile:
            selectTtsFile();
            break;
        case Response::kTtsMessage:
            enterSpokenText();
            break;
        case Response::kEmail:
            enterEmail();
            break;
        default:
            return;
    }
    form_.rewriteResponseLine();
    showLists();
}

void CSetupEventDlg::selectAudio() {
    CSetupServerAudioFileDlg dialog(parts_.resources, parts_.directory, form_.messageKey());
    if (dialog.run(window())) form_.setMessageKey(dialog.key());
}

void CSetupEventDlg::selectTtsFile() {
    CSetupTtsFilenameDlg dialog(parts_.resources, form_.ttsFilename());
    if (dialog.run(window())) form_.setTtsFilename(dialog.filename());
}

void CSetupEventDlg::enterSpokenText() {
    CSetupTtsDlg dialog(parts_.resources, form_.spokenText());
    if (!dialog.run(window())) return;
    endFetch(PayloadKind::kSpokenText);
    form_.setSpokenText(dialog.text());
}

void CSetupEventDlg::enterEmail() {
    CSetupEmailDlg dialog(parts_.resources, form_.email());
    if (!dialog.run(window())) return;
    endFetch(PayloadKind::kEmail);
    form_.setEmail(dialog.email());
}

void CSetupEventDlg::editSchedules() {
    CConfigureSchedulesDlg(parts_.resources, parts_.schedules, parts_.makeSortKey, parts_.scheduleCommands)
        .runModal(window());
    form_.refreshSchedules();
    showLists();
}

void CSetupEventDlg::save() {
    if (!parts_.isConnected()) {
        // What was entered stays on the screen until the logon dialog, which is about to come, has found the server.
        parts_.log.log("fillEvent: Not saved, the server is not connected");
        return;
    }
    // A second try after a failure is for the same Event.
    if (key_.empty()) key_ = newGuidText(win32::newGuid);
    parts_.apply(changeFrom(form_, opened_, key_));
    endDialog(IDOK);
}

// ---------------------------------------------------------------------------------------------------------------------
// The payload file

bool CSetupEventDlg::onTimer(std::uintptr_t timer) {
    switch (timer) {
        case kFootTimer:
            showFoot();
            return true;
        case kFetchSpokenText:
            startFetch(PayloadKind::kSpokenText);
            return true;
        case kFetchEmail:
            startFetch(PayloadKind::kEmail);
            return true;
        case kPollSpokenText:
        case kPollEmail:
            pollFetch(timer);
            return true;
        default:
            return false;
    }
}

void CSetupEventDlg::startFetch(PayloadKind fetch) {
    const bool isEmail = fetch == PayloadKind::kEmail;
    KillTimer(window(), isEmail ? kFetchEmail : kFetchSpokenText);
    if (fetcher_.start(fetch, opened_ ? opened_->fileGuid.value_or(std::string()) : std::string())) {
        pleaseWait_.createModeless(window());
        UpdateWindow(pleaseWait_.window());
    }
    if (SetTimer(window(), isEmail ? kPollEmail : kPollSpokenText, kPollPeriod, nullptr) != 0) return;
    // Nothing would ever look for the file.
    endFetch(fetch);
    form_.takeFetched({fetch});
    showLists();
}

void CSetupEventDlg::pollFetch(std::uintptr_t timer) {
    std::optional<FetchedPayload> fetched = fetcher_.poll();
    if (!fetched) return;
    KillTimer(window(), timer);
    pleaseWait_.destroy();
    form_.takeFetched(*std::move(fetched));
    showLists();
}

// The operator has entered a payload: the stored one of the same kind is no longer wanted.
void CSetupEventDlg::endFetch(PayloadKind kind) {
    const bool isEmail = kind == PayloadKind::kEmail;
    KillTimer(window(), isEmail ? kFetchEmail : kFetchSpokenText);
    KillTimer(window(), isEmail ? kPollEmail : kPollSpokenText);
    fetcher_.cancel(kind);
    if (fetcher_.kind() == PayloadKind::kNone) pleaseWait_.destroy();
}

void CSetupEventDlg::onDestroy() {
    pleaseWait_.destroy();
}

}  // namespace orvc
