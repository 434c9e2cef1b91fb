#pragma once
// Helpers for tests against the test domain controller (scripts/testdc.sh): its constants, a
// connected gSession by either method, and an OU of the test's own that is removed with
// everything in it when the test ends.
//
// The DC's constants are read from the testdc.env file that `scripts/testdc.sh start` writes
// into its folder ($ORIN_TESTDC_DIR, default /tmp/orin-testdc), so the script stays their one
// source: realm ORIN.TEST, DNS domain orin.test, NetBIOS ORIN, DC orindc.orin.test.
//
// Typical use:
//   class MyTest : public orin::test::DcTest {};
//   TEST_F(MyTest, Something) { ... ou().Dn() ... gSession.RootObject ... }

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "directory/DirObject.h"
#include "support/ScriptedOperator.h"

namespace orin::test {

struct TestDcInfo {
    std::string dir;
    std::string realm;          // ORIN.TEST
    std::string dnsDomain;      // orin.test
    std::string netbiosDomain;  // ORIN
    std::string host;           // orindc
    std::string fqdn;           // orindc.orin.test
    std::string adminUser;      // Administrator
    std::string adminPassword;
    std::string caFile;         // the DC's CA certificate (PEM)
    std::string krb5Config;     // KRB5_CONFIG for the realm
    std::string krb5Ccname;     // KRB5CCNAME holding Administrator's ticket
    std::string homeShare;      // \\orindc.orin.test\orinhome
    std::string homeSharePath;  // the share's folder on this machine
    std::string domainDn;       // DC=orin,DC=test
};

// The running test DC, or nullopt (with the reason in `why`) when it isn't started.
std::optional<TestDcInfo> FindTestDc(std::string* why = nullptr);
// The running test DC; fails the current test (fatally) when there is none.
const TestDcInfo& TestDc();

enum class ConnectMethod { Local, Remote };

// For tests run under both methods:
//   INSTANTIATE_TEST_SUITE_P(Methods, MyTest, test::BothMethods(), test::MethodName);
inline auto BothMethods() {
    return ::testing::Values(ConnectMethod::Local, ConnectMethod::Remote);
}
inline std::string MethodName(const ::testing::TestParamInfo<ConnectMethod>& info) {
    return info.param == ConnectMethod::Local ? "Local" : "Remote";
}

// Fills gSession with the test DC's names for the method, without connecting: the remote
// method goes to orindc.orin.test with Administrator's password and the DC's CA file; the local
// method sets KRB5_CONFIG and KRB5CCNAME to the DC's ticket cache.
void PrepareSession(ConnectMethod method);
// PrepareSession, then ConnectLocal or ConnectRemote. On failure the message shown to the
// operator is part of the assertion's text.
::testing::AssertionResult ConnectTestDc(ConnectMethod method);

// An account name unique to this process and short enough for sAMAccountName (20 characters):
// the first ten letters and digits of `base`, then the process id.
std::string UniqueSam(std::string_view base);

// Deletes the entry at `dn` and everything below it, deepest first.
bool DeleteTree(std::string_view dn, std::string* error = nullptr);

// An OU under the domain root named after the running test and the process
// ("OU=<TestName>-<pid>"), created on construction (a leftover of that name is removed first)
// and deleted with its whole subtree on destruction. Needs a connected gSession.
class ScopedOu {
  public:
    ScopedOu();
    explicit ScopedOu(std::string_view name);
    ~ScopedOu();
    ScopedOu(const ScopedOu&) = delete;
    ScopedOu& operator=(const ScopedOu&) = delete;

    bool ok() const { return object_.IsBound(); }
    const std::string& Rdn() const { return rdn_; }  // "OU=<name>"
    std::string Dn() const;                          // "OU=<name>,DC=orin,DC=test"
    // "LDAP://" + Dn(), no server part; with an `rdn` the path of "<rdn>,<the OU>".
    std::string Path(std::string_view rdn = {}) const;
    // The relative name under the root of something inside: Relative("CN=x") gives
    // "CN=x,OU=<name>", for Create, Delete and MoveHere on gSession.RootObject.
    std::string Relative(std::string_view rdn) const;
    DirObject& Object() { return object_; }

    // Makes an object of class `cls` at `rdn` inside the OU ("CN=g" or "CN=u,OU=sub") with the
    // values given, and returns it bound afresh; a refusal fails the current test. Users and
    // groups get the sAMAccountName UniqueSam(<first RDN's value>), computers the same with "$",
    // unless `values` names one.
    DirObject Make(std::string_view cls, std::string_view rdn,
                   const std::vector<std::pair<std::string, std::string>>& values = {});
    // "<rdn>,<the OU>" (the OU itself for ""), bound afresh; fails the current test when it does
    // not bind.
    DirObject Bind(std::string_view rdn) const;

  private:
    std::string rdn_;
    DirObject object_;
};

// A test connected to the test DC (remote method unless the constructor says otherwise), with
// a scripted operator and an OU of its own.
class DcTest : public ::testing::Test {
  protected:
    explicit DcTest(ConnectMethod method = ConnectMethod::Remote) : method_(method) {}
    void SetUp() override;
    void TearDown() override;
    ScopedOu& ou() { return *ou_; }

    ScriptedOperator op;

  private:
    ConnectMethod method_;
    std::optional<ScopedOu> ou_;
};

// A DcTest run once with each method (see BothMethods).
class DcMethodTest : public DcTest, public ::testing::WithParamInterface<ConnectMethod> {
  protected:
    DcMethodTest() : DcTest(GetParam()) {}
    // The server part of the paths that objects bound under the method report.
    static std::string Server() {
        return GetParam() == ConnectMethod::Remote ? "orindc.orin.test/" : "";
    }
};

}  // namespace orin::test
