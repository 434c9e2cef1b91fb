#include "support/ScriptedOperator.h"

namespace orin::test {

ScriptedOperator::ScriptedOperator() : previous_(&TheOperator()) {
    SetOperator(this);
}

ScriptedOperator::~ScriptedOperator() {
    SetOperator(previous_);
}

void ScriptedOperator::QueueAnswers(std::initializer_list<MsgAnswer> answers) {
    answers_.insert(answers_.end(), answers.begin(), answers.end());
}

MsgAnswer ScriptedOperator::MessageBox(std::string_view title, std::string_view text, MsgIcon icon,
                                       MsgButtons buttons) {
    MsgAnswer answer = MsgAnswer::Ok;
    if (buttons == MsgButtons::YesNo) {
        answer = defaultAnswer;
        if (!answers_.empty()) {
            answer = answers_.front();
            answers_.pop_front();
        }
    }
    boxes.push_back({std::string(title), std::string(text), icon, buttons, answer});
    return answer;
}

MsgAnswer ScriptedOperator::DetailedMessageBox(std::string_view title, std::string_view text,
                                               std::string_view detail, MsgIcon icon,
                                               MsgButtons buttons) {
    const MsgAnswer answer = MessageBox(title, text, icon, buttons);
    boxes.back().detail = detail;
    return answer;
}

void ScriptedOperator::SetProgressTitle(std::string_view caption) {
    progressTitle = caption;
}

void ScriptedOperator::SetStatus(std::string_view text, bool red) {
    status = text;
    statusRed = red;
}

void ScriptedOperator::SetCounterCaptions(std::string_view first, std::string_view second) {
    counterCaption1 = first;
    counterCaption2 = second;
}

void ScriptedOperator::SetTotal(int32_t value) {
    total = value;
}

void ScriptedOperator::SetCounters(int32_t a, int32_t b, int32_t c) {
    label6 = a;
    label7 = b;
    label8 = c;
}

void ScriptedOperator::SetProgressValue(int32_t value) {
    progressValue = value;
    progressValues.push_back(value);
}

void ScriptedOperator::SetCommandCaption(std::string_view caption) {
    commandCaption = caption;
}

void ScriptedOperator::Yield() {
    ++yields;
    if (onYield) onYield(yields);
}

void ScriptedOperator::OpenEventLog(const std::filesystem::path& path) {
    openedLogs.push_back(path.string());
}

void ScriptedOperator::ShowLogin() {
    ++logins;
    if (onLogin) onLogin();
}

void ScriptedOperator::ShowConnectWait(const std::function<void()>& connect) {
    ++connectWaits;
    connect();
}

void ScriptedOperator::ShowCollectWait(std::string_view, const std::function<void()>& collect) {
    ++collectWaits;
    collect();
}

void ScriptedOperator::ShowProgress(const std::function<void()>& run) {
    ++progressWindows;
    run();
}

}  // namespace orin::test
