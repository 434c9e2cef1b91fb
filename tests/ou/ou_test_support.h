#pragma once
// Shared by the OU tests against the test DC that need code (the end-to-end cases are scenario
// folders, tests/scenarios/ou): a test with an OU of its own, which runs CSV lines through the OU
// row loop as a run's Start method does and reads back the event log.
//
// Rows name OUs below the test's OU: "{T}" in a CSV line stands for its name, so "{T},a,b" is the
// OU "OU=b,OU=a,OU=<test>". The helpers name that OU "a,b" (top level first; "" is the test's OU).

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/RunContext.h"
#include "csv/ColumnRegistry.h"
#include "csv/CsvReader.h"
#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "directory/Trustee.h"
#include "engines/access/AccessControl.h"
#include "engines/access/ObjectDacl.h"
#include "engines/ou/OUCommon.h"
#include "engines/ou/OUFastPath.h"
#include "engines/ou/OUModes.h"
#include "engines/ou/OUProduction.h"
#include "platform/Cp932.h"
#include "platform/LdapConnection.h"
#include "platform/Strings.h"
#include "run/RegisterEngines.h"
#include "run/RowLoop.h"
#include "run/RunTestSupport.h"
#include "support/TestDc.h"

namespace orin::test {

// The RowOperation of each run: production 0-3, imitation 4-7, compare 8-11.
// clang-format off
enum : RowOperation { kAdd, kDel, kMov, kMdf, kImitateAdd, kImitateDel, kImitateMov, kImitateMdf,
                      kCompareAdd, kCompareDel, kCompareMov, kCompareMdf };
// clang-format on

using Attributes = std::vector<std::pair<std::string, std::string>>;
using Props = std::map<std::string, std::string>;

inline constexpr const char* kFail = "失敗";
inline constexpr const char* kDiff = "相違";

// One line of a test's CSV file and what the run must log for it: nothing, or a line
// "<n>行, <outcome>, <text>" for each text, under the line's number.
struct Row {
    std::string csv;
    const char* outcome = nullptr;
    std::vector<std::string> texts = {};
};

inline std::string Differs(std::string_view property, std::string_view inCsv,
                           std::string_view inDirectory) {
    return "ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[" + std::string(property) +
           "]に相違がありました。\r\n\t【ｲﾝﾎﾟｰﾄﾃﾞｰﾀ内のﾌﾟﾛﾊﾟﾃｨ値】：" + std::string(inCsv) +
           "\r\n\t【ｵﾌﾞｼﾞｪｸﾄ実際のﾌﾟﾛﾊﾟﾃｨ値】：" + std::string(inDirectory);
}

class OUTest : public DcTest {
  protected:
    explicit OUTest(ConnectMethod method = ConnectMethod::Remote) : DcTest(method) {}
    void SetUp() override {
        DcTest::SetUp();
        if (HasFatalFailure()) return;
        ResetRun(folder.path());
        RegisterAllEngines();
        SetOUFastPath(true);
        ClearTrusteeCache();
        PendingNewName.clear();
    }
    void TearDown() override {
        SetOUFastPath(true);
        DcTest::TearDown();
    }

    // The test OU's name: the top cell of every row.
    std::string Top() { return RdnValue(ou().Rdn()); }
    // "OU=b,OU=a,OU=<test>" for "a,b".
    std::string PathOf(std::string_view names) {
        std::string path = ou().Rdn();
        if (!names.empty())
            for (const std::string& name : Split(names, ',')) path = "OU=" + name + "," + path;
        return path;
    }
    std::string DnOf(std::string_view names) { return PathOf(names) + "," + gSession.DomainDN; }
    static bool Binds(const std::string& dn) {
        DirObject object;
        return BindObject("LDAP://" + dn, object);
    }
    bool Exists(std::string_view names) { return Binds(DnOf(names)); }
    // An attribute's one value, "" when it has none.
    std::string Attr(std::string_view names, std::string_view attribute) {
        DirObject object;
        if (!BindObject("LDAP://" + DnOf(names), object)) return "<absent>";
        return object.Get(attribute).value_or({});
    }
    // The OU's properties that have a value.
    Props PropsOf(std::string_view names) {
        Props props;
        for (const char* a : {"c", "postalCode", "st", "l", "street", "description", "managedBy"})
            if (std::string v = Attr(names, a); !v.empty()) props[a] = v;
        return props;
    }

    // Makes the object `relative` (to the domain) with these attributes; gives it bound.
    DirObject Make(std::string_view cls, const std::string& relative,
                   const Attributes& attributes = {}) {
        auto made = gSession.RootObject.Create(cls, relative);
        EXPECT_TRUE(made.ok()) << relative << ": " << made.status().message;
        if (!made.ok()) return {};
        for (const auto& [name, value] : attributes) made->Put(name, value);
        DirStatus status = made->SetInfo();
        EXPECT_TRUE(status.ok()) << relative << ": " << status.message;
        DirObject bound;
        EXPECT_TRUE(BindObject("LDAP://" + relative + "," + gSession.DomainDN, bound));
        return bound;
    }
    DirObject MakeOU(std::string_view names, const Attributes& attributes = {}) {
        return Make("organizationalUnit", PathOf(names), attributes);
    }
    // A user (or group...) `cn` in the OU `names`, with an account name unique in the domain.
    // Gives the account name.
    std::string MakeAccount(std::string_view cls, std::string_view cn,
                            std::string_view names = "") {
        Make(cls, "CN=" + std::string(cn) + "," + PathOf(names), {{"sAMAccountName", Sam(cn)}});
        return Sam(cn);
    }
    static std::string Sam(std::string_view cn) {
        return std::string(cn.substr(0, 8)) + std::to_string(getpid());
    }

    // The DACL's control and its explicit ACEs (all its ACEs with `inherited`).
    std::pair<uint16_t, std::vector<Ace>> Dacl(std::string_view names, bool inherited = false) {
        DirObject object;
        if (!BindObject("LDAP://" + DnOf(names), object)) return {};
        auto dacl = ReadObjectDacl(object);
        if (!dacl) return {};
        std::vector<Ace> aces;
        for (const Ace& ace : dacl->Aces())
            if (inherited || !ace.IsInherited()) aces.push_back(ace);
        return {dacl->descriptor.Control, aces};
    }
    std::vector<Ace> AcesOf(std::string_view names, const std::string& account) {
        std::vector<Ace> aces;
        for (const Ace& ace : Dacl(names, true).second)
            if (IsAceOf(ace, TrusteeName(account))) aces.push_back(ace);
        return aces;
    }

    // Writes the header and the rows as the run's CSV file (CP932, CR LF) and runs them through
    // RunRows_OU with `op` as the RowOperation, on a run reset as its driver resets it. Passes
    // when the event log holds exactly the rows' expected lines (its bytes: CP932, CR LF) and
    // the counters read `tally`: "success/warning/failure", in a compare "match/difference/
    // failure".
    ::testing::AssertionResult Runs(RowOperation op, std::string_view tally,
                                    const std::string& header, const std::vector<Row>& rows) {
        std::vector<std::string> lines = {header};
        std::string expected;
        for (const Row& row : rows) {
            lines.push_back(ReplaceAll(row.csv, "{T}", Top()));
            for (const std::string& text : row.texts)
                expected +=
                    std::to_string(lines.size()) + "行, " + row.outcome + ", " + text + "\r\n";
        }
        const std::string log = Run(op, lines);
        const int32_t first = gRun.blnCompare ? gRun.lngMatchCnt : gRun.lngSuccessCnt;
        const int32_t second = gRun.blnCompare ? gRun.lngDiffCnt : gRun.lngWarningCnt;
        const std::string counters = std::to_string(first) + "/" + std::to_string(second) + "/" +
                                     std::to_string(gRun.lngFailureCnt);
        if (log == expected && counters == tally) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure()
               << "counters " << counters << ", expected " << tally << "\nevent log:\n"
               << log << "expected:\n"
               << expected;
    }
    // The same with the lines of a file as they stand: gives the event log's text.
    std::string Run(RowOperation op, const std::vector<std::string>& lines) {
        const std::filesystem::path csv = folder / "rows.csv";
        WriteCsv(csv, lines);
        const int trace = TraceMode;  // a test may have turned the trace on
        ResetRun(folder.path());
        TraceMode = trace;
        std::filesystem::remove(gRun.strEventLogPath);
        gRun.strCsvPath = csv.string();
        gRun.blnImitate = op >= kImitateAdd && op <= kImitateMdf;
        gRun.blnCompare = op >= kCompareAdd;
        const auto kind =
            op == kCompareOfExport ? OperationKind::Exp : static_cast<OperationKind>(op % 4);
        PrepareRunColumns(ObjectKind::OU, kind, op == kCompareOfExport);
        EXPECT_TRUE(ReadHeader(csv, gRun.ColumnNames, gRun.ColumnIndex));
        EXPECT_TRUE(ReadMirrorFlags(csv, gRun.MirrorFlags));
        gRun.lngObjectCnt = CountObjects(csv);
        requests = gSession.Connection->RequestCount();
        RunRows_OU(csv, op, gRun.ColumnIndex);
        requests = gSession.Connection->RequestCount() - requests;
        return platform::Cp932ToUtf8(ReadBytes(gRun.strEventLogPath));
    }

    // Those of these OUs that exist, separated by blanks.
    std::string Existing(std::initializer_list<std::string_view> names) {
        std::vector<std::string> found;
        for (std::string_view name : names)
            if (Exists(name)) found.emplace_back(name);
        return Join(found, " ");
    }

    ScratchFolder folder;
    long requests = 0;  // LDAP requests of the last Run
};

}  // namespace orin::test
