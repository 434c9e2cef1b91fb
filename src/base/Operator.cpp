#include "base/Operator.h"

namespace orin {
namespace {

// Stands in until a front end installs its operator: every question is answered No and
// nothing is shown, so that nothing is ever done without someone having agreed to it.
class NoOperator final : public Operator {
  public:
    DomainFields MainWindowDomainFields(OperationKind) override { return {}; }
    MsgAnswer MessageBox(std::string_view, std::string_view, MsgIcon, MsgButtons buttons) override {
        return buttons == MsgButtons::YesNo ? MsgAnswer::No : MsgAnswer::Ok;
    }
    void SetProgressTitle(std::string_view) override {}
    void SetStatus(std::string_view, bool) override {}
    void SetCounterCaptions(std::string_view, std::string_view) override {}
    void SetTotal(int32_t) override {}
    void SetCounters(int32_t, int32_t, int32_t) override {}
    void SetProgressValue(int32_t) override {}
    void SetCommandCaption(std::string_view) override {}
    void Yield() override {}
    void OpenEventLog(const std::filesystem::path&) override {}
    void ShowLogin() override {}
    void ShowConnectWait(const std::function<void()>& connect) override { connect(); }
    void ShowCollectWait(std::string_view, const std::function<void()>& collect) override {
        collect();
    }
    void ShowProgress(const std::function<void()>& run) override { run(); }
};

NoOperator gNoOperator;
Operator* gOperator = &gNoOperator;

}  // namespace

Operator& TheOperator() {
    return *gOperator;
}

void SetOperator(Operator* op) {
    gOperator = op ? op : &gNoOperator;
}

}  // namespace orin
