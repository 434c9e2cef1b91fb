#include "support/TestDc.h"

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <fstream>
#include <map>

#include "directory/Bind.h"
#include "directory/Connect.h"
#include "directory/DirectorySession.h"
#include "directory/Paths.h"
#include "platform/LdapConnection.h"

namespace orin::test {

namespace {

std::string TestDcDir() {
    const char* dir = std::getenv("ORIN_TESTDC_DIR");
    return dir && *dir ? dir : "/tmp/orin-testdc";
}

// Lines of the form: export NAME='value'
std::map<std::string, std::string> ReadEnvFile(const std::string& path) {
    std::map<std::string, std::string> values;
    std::ifstream in(path);
    std::string line;
    while (std::getline(in, line)) {
        if (line.rfind("export ", 0) != 0) continue;
        size_t eq = line.find('=');
        if (eq == std::string::npos) continue;
        std::string value = line.substr(eq + 1);
        if (value.size() >= 2 && value.front() == '\'' && value.back() == '\'') {
            value = value.substr(1, value.size() - 2);
        }
        values[line.substr(7, eq - 7)] = value;
    }
    return values;
}

bool DaemonRuns(const std::string& dir) {
    std::ifstream in(dir + "/run/samba.pid");
    long pid = 0;
    return (in >> pid) && pid > 0 && kill(static_cast<pid_t>(pid), 0) == 0;
}

int Depth(std::string_view dn) {
    int depth = 0;
    for (std::string rest(dn); !rest.empty(); rest = ParentDn(rest)) ++depth;
    return depth;
}

std::string CurrentTestName() {
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    std::string name = info ? info->name() : "orin-test";
    std::replace(name.begin(), name.end(), '/', '_');
    if (name.size() > 48) name.resize(48);
    return name;
}

}  // namespace

std::optional<TestDcInfo> FindTestDc(std::string* why) {
    std::string dir = TestDcDir();
    auto env = ReadEnvFile(dir + "/testdc.env");
    if (env.empty() || !DaemonRuns(dir)) {
        if (why) *why = "the test DC is not running in " + dir + " (scripts/testdc.sh start)";
        return std::nullopt;
    }
    TestDcInfo info;
    info.dir = dir;
    info.realm = env["ORIN_TESTDC_REALM"];
    info.dnsDomain = env["ORIN_TESTDC_DNS_DOMAIN"];
    info.netbiosDomain = env["ORIN_TESTDC_NETBIOS_DOMAIN"];
    info.host = env["ORIN_TESTDC_HOST"];
    info.fqdn = env["ORIN_TESTDC_FQDN"];
    info.adminUser = env["ORIN_TESTDC_ADMIN_USER"];
    info.adminPassword = env["ORIN_TESTDC_ADMIN_PASSWORD"];
    info.caFile = env["ORIN_TESTDC_CA_FILE"];
    info.krb5Config = env["KRB5_CONFIG"];
    info.krb5Ccname = env["KRB5CCNAME"];
    info.homeShare = env["ORIN_TESTDC_HOME_SHARE"];
    info.homeSharePath = env["ORIN_TESTDC_HOME_SHARE_PATH"];
    info.domainDn = BuildDomainDN(info.dnsDomain);
    return info;
}

const TestDcInfo& TestDc() {
    static TestDcInfo info;
    std::string why;
    if (auto found = FindTestDc(&why)) {
        info = *found;
    } else {
        ADD_FAILURE() << why;
    }
    return info;
}

void PrepareSession(ConnectMethod method) {
    const TestDcInfo& dc = TestDc();
    gSession = DirectorySession();
    gSession.DomainDNSName = dc.dnsDomain;
    gSession.DomainNetBIOSName = dc.netbiosDomain;
    gSession.DomainDN = BuildDomainDN(dc.dnsDomain);
    gSession.CaFile = dc.caFile;
    if (method == ConnectMethod::Local) {
        gSession.Method = "local";
        setenv("KRB5_CONFIG", dc.krb5Config.c_str(), 1);
        setenv("KRB5CCNAME", dc.krb5Ccname.c_str(), 1);
    } else {
        gSession.Method = "remote";
        gSession.DcComputerName = dc.fqdn;
        gSession.UserName = dc.adminUser;
        gSession.Password = dc.adminPassword;
    }
}

::testing::AssertionResult ConnectTestDc(ConnectMethod method) {
    PrepareSession(method);
    ScriptedOperator op;
    if (method == ConnectMethod::Local) {
        ConnectLocal();
    } else {
        ConnectRemote();
    }
    if (gSession.Connected) return ::testing::AssertionSuccess();
    auto failure = ::testing::AssertionFailure() << "connecting to the test DC failed";
    for (const auto& box : op.boxes) failure << ": " << box.title << " / " << box.text;
    return failure;
}

std::string UniqueSam(std::string_view base) {
    std::string sam;
    for (char c : base) {
        if (std::isalnum(static_cast<unsigned char>(c)) && sam.size() < 10) sam += c;
    }
    return sam + std::to_string(getpid());
}

bool DeleteTree(std::string_view dn, std::string* error) {
    if (!gSession.Connection) {
        if (error) *error = "not connected";
        return false;
    }
    // Deepest first; at one depth groups first, so that the server needn't take each deleted
    // member out of a group that is about to go anyway.
    struct Doomed {
        std::string dn;
        int depth;
        bool group;
    };
    std::vector<Doomed> doomed;
    auto status =
        gSession.Connection->SearchEach(dn, platform::LdapScope::Subtree, "(objectClass=*)",
                                        {"objectClass"}, [&doomed](platform::LdapEntry& e) {
                                            bool group = false;
                                            if (const auto* classes = e.Find("objectClass")) {
                                                for (const auto& c : *classes)
                                                    group = group || c == "group";
                                            }
                                            doomed.push_back({e.dn, Depth(e.dn), group});
                                            return true;
                                        });
    if (status.code == platform::kLdapNoSuchObject) return true;
    if (!status.ok()) {
        if (error) *error = status.message;
        return false;
    }
    std::stable_sort(doomed.begin(), doomed.end(), [](const Doomed& a, const Doomed& b) {
        return a.depth != b.depth ? a.depth > b.depth : a.group > b.group;
    });
    for (const auto& d : doomed) {
        status = gSession.Connection->Delete(d.dn);
        if (!status.ok() && status.code != platform::kLdapNoSuchObject) {
            if (error) *error = status.message;
            return false;
        }
    }
    return true;
}

ScopedOu::ScopedOu() : ScopedOu(CurrentTestName()) {}

ScopedOu::ScopedOu(std::string_view name)
    : rdn_("OU=" + std::string(name) + "-" + std::to_string(getpid())) {
    std::string error;
    if (!DeleteTree(Dn(), &error)) {
        ADD_FAILURE() << "removing a leftover " << Dn() << ": " << error;
        return;
    }
    auto created = gSession.RootObject.Create("organizationalUnit", rdn_);
    if (!created.ok()) {
        ADD_FAILURE() << "creating " << Dn() << ": " << created.status().message;
        return;
    }
    DirStatus status = created->SetInfo();
    if (!status.ok()) {
        ADD_FAILURE() << "creating " << Dn() << ": " << status.message;
        return;
    }
    object_ = *created;
}

ScopedOu::~ScopedOu() {
    std::string error;
    if (!DeleteTree(Dn(), &error)) ADD_FAILURE() << "removing " << Dn() << ": " << error;
}

std::string ScopedOu::Dn() const {
    return rdn_ + "," + gSession.DomainDN;
}

std::string ScopedOu::Path(std::string_view rdn) const {
    return "LDAP://" + (rdn.empty() ? Dn() : Relative(rdn) + "," + gSession.DomainDN);
}

std::string ScopedOu::Relative(std::string_view rdn) const {
    return std::string(rdn) + "," + rdn_;
}

DirObject ScopedOu::Make(std::string_view cls, std::string_view rdn,
                         const std::vector<std::pair<std::string, std::string>>& values) {
    auto created = gSession.RootObject.Create(cls, Relative(rdn));
    EXPECT_TRUE(created.ok()) << rdn << ": " << created.status().message;
    if (!created.ok()) return {};
    const bool named = std::any_of(values.begin(), values.end(),
                                   [](const auto& v) { return v.first == "sAMAccountName"; });
    if (!named && (cls == "user" || cls == "group" || cls == "computer")) {
        created->Put("sAMAccountName",
                     UniqueSam(RdnValue(FirstRdn(rdn))) + (cls == "computer" ? "$" : ""));
    }
    for (const auto& [attribute, value] : values) created->Put(attribute, value);
    DirStatus status = created->SetInfo();
    EXPECT_TRUE(status.ok()) << rdn << ": " << status.message;
    return status.ok() ? Bind(rdn) : DirObject{};
}

DirObject ScopedOu::Bind(std::string_view rdn) const {
    DirObject object;
    EXPECT_TRUE(BindObject(Path(rdn), object)) << Path(rdn);
    return object;
}

void DcTest::SetUp() {
    std::string why;
    ASSERT_TRUE(FindTestDc(&why)) << why;
    ASSERT_TRUE(ConnectTestDc(method_));
    ou_.emplace();
    ASSERT_TRUE(ou_->ok());
}

void DcTest::TearDown() {
    ou_.reset();
}

}  // namespace orin::test
