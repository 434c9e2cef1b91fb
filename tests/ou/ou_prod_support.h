#pragma once
// Shared by the OU production tests: CSV files written by the test (CP932, CR LF), run through
// the row loop with the production engines as a driver prepares it, and the Event.log the run
// leaves. Each test works in an OU of its own on the test domain controller.

#include <gtest/gtest.h>
#include <unistd.h>

#include <map>
#include <string>
#include <vector>

#include "csv/ColumnRegistry.h"
#include "csv/CsvReader.h"
#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "directory/Trustee.h"
#include "engines/access/AccessControl.h"
#include "engines/access/ObjectDacl.h"
#include "engines/ou/OUFastPath.h"
#include "engines/ou/OUProduction.h"
#include "platform/LdapConnection.h"
#include "platform/Strings.h"
#include "run/EventLog.h"
#include "run/RowLoop.h"
#include "run/RunContext.h"
#include "run/RunTestSupport.h"
#include "support/TestDc.h"

namespace orin::test {

using Lines = std::vector<std::string>;
using Values = std::map<std::string, std::string>;  // CSV cells by column name

inline Values operator+(Values a, const Values& b) {
    for (const auto& [k, v] : b) a[k] = v;
    return a;
}
inline Lines operator+(Lines a, const Lines& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// The columns of a CSV file in file order. The unnamed columns inside a span are written
// "OU.2", "OU.3"...: their header cell is empty.
class Csv {
  public:
    explicit Csv(std::string columns) : columns_(Split(columns, ',')) {}
    std::string Header() const {
        Lines cells;
        for (const std::string& c : columns_) cells.push_back(c.find('.') == c.npos ? c : "");
        return "!" + Join(cells, ",");
    }
    std::string Row(const Values& cells) const {
        Lines line;
        for (const std::string& c : columns_)
            line.push_back(cells.count(c) ? cells.at(c) : std::string());
        return Join(line, ",");
    }

  private:
    Lines columns_;
};

// The column lists of the tests: an OU span of four cells (the test's OU and three levels), a
// manager span of two, a target span of three.
inline const Csv kAdd(
    "OU-Start,OU.2,OU.3,OU-End,c,postalCode,st,l,street,description,MgrOU-Start,MgrOU-End,MgrRDN,"
    "Mirror,RemDefaultACL,DoNotRemTheseACE,AceSamAccountName,AceOpeMode,AccessRight,PermitOrDeny,"
    "InheritOption,InheritParentACL");
inline const Csv kMdf(
    "OU-Start,OU.2,OU.3,OU-End,NewRDN,c,postalCode,st,l,postOfficeBox,street,description,"
    "MgrOU-Start,MgrOU-End,MgrRDN,RemDefaultACL,DoNotRemTheseACE,AceSamAccountName,AceOpeMode,"
    "AccessRight,PermitOrDeny,InheritOption,Mirror,InheritParentACL");
inline const Csv kDel("OU-Start,OU.2,OU.3,OU-End,IfDelSubObj,Mirror");
inline const Csv kMov("OU-Start,OU.2,OU.3,OU-End,NewOU-Start,NewOU.2,NewOU-End,NewRDN,Mirror");

// The summary block of a production run as WriteLogSummary writes it.
inline Lines Summary(int objects, int success, int warning, int failure, bool cancelled = false,
                     int cancelLine = 0) {
    Lines lines = {
        "ｵﾌﾞｼﾞｪｸﾄ総数： " + std::to_string(objects),
        "処理完了数： " + std::to_string(success + warning + failure),
        "処理成功数： " + std::to_string(success),
        "処理警告数： " + std::to_string(warning),
        "処理失敗数： " + std::to_string(failure),
        cancelled ? "ｷｬﾝｾﾙによる中断の有無： 有" : "ｷｬﾝｾﾙによる中断の有無： 無",
    };
    if (cancelled) lines.push_back("ｷｬﾝｾﾙ時の処理済最終行： " + std::to_string(cancelLine));
    lines.push_back(std::string(50, '-'));
    return lines;
}

class OUProdTest : public DcTest {
  protected:
    explicit OUProdTest(ConnectMethod method = ConnectMethod::Remote) : DcTest(method) {}
    void SetUp() override {
        DcTest::SetUp();
        if (HasFatalFailure()) return;
        ResetRun(folder.path());
        RegisterOUProductionEngines();
        SetOUFastPath(true);
        ClearTrusteeCache();
        PendingNewName.clear();
    }
    void TearDown() override {
        SetOUFastPath(true);
        DcTest::TearDown();
    }

    // Cells of a span: the test's OU, then the levels below it.
    Values Span(const std::string& prefix, const Lines& below, bool withTop = true) {
        Values cells;
        Lines levels = below;
        if (withTop) levels.insert(levels.begin(), RdnValue(ou().Rdn()));
        const Lines names = {prefix + "-Start", prefix + ".2", prefix + ".3"};
        for (size_t i = 0; i < levels.size(); ++i)
            cells[i + 1 == levels.size() && i > 0 ? prefix + "-End" : names.at(i)] = levels[i];
        return cells;
    }
    Values At(const Lines& below) { return Span("OU", below); }
    Values To(const Lines& below) { return Span("NewOU", below); }
    // A manager in the test's OU.
    Values Manager(const std::string& rdn) { return Span("MgrOU", {}) + Values{{"MgrRDN", rdn}}; }
    static Values AceCells(const std::string& account, const std::string& mode,
                           const std::string& rights, const std::string& inherit = "") {
        return {{"AceSamAccountName", account},
                {"AceOpeMode", mode},
                {"AccessRight", rights},
                {"InheritOption", inherit}};
    }

    std::string Top() { return RdnValue(ou().Rdn()); }
    // "OU=c,OU=b,OU=<top>,DC=..." for the levels below the test's OU, top first.
    std::string OuDn(const Lines& below) {
        std::string dn = ou().Dn();
        for (const std::string& level : below) dn = "OU=" + level + "," + dn;
        return dn;
    }
    static bool Exists(const std::string& dn) {
        DirObject object;
        return BindObject("LDAP://" + dn, object);
    }
    // An attribute's one value; "" when it has none.
    static std::string Attr(const std::string& dn, const std::string& attribute) {
        DirObject object;
        if (!BindObject("LDAP://" + dn, object)) return "<absent>";
        return object.Get(attribute).value_or({});
    }
    // An object in the test's OU (`rdn` relative to it), with these values.
    void Make(const std::string& cls, const std::string& rdn, const Values& values = {}) {
        auto made = gSession.RootObject.Create(cls, ou().Relative(rdn));
        ASSERT_TRUE(made.ok()) << made.status().message;
        for (const auto& [attribute, value] : values) made->Put(attribute, value);
        DirStatus status = made->SetInfo();
        ASSERT_TRUE(status.ok()) << rdn << ": " << status.message;
    }
    void MakeOU(const std::string& rdn, const Values& values = {}) {
        Make("organizationalUnit", rdn, values);
    }
    // A group or user with an account name unique in the domain; gives the name.
    std::string MakeAccount(const std::string& cls, const std::string& cn) {
        const std::string sam = cn + std::to_string(getpid());
        Make(cls, "CN=" + cn, {{"sAMAccountName", sam}});
        return sam;
    }

    static std::vector<Ace> AcesOf(const std::string& dn, const std::string& account) {
        std::vector<Ace> aces;
        for (const Ace& ace : ExplicitDacl(dn, true).second)
            if (IsAceOf(ace, TrusteeName(account))) aces.push_back(ace);
        return aces;
    }
    // The DACL's control and its explicit ACEs (all ACEs with `inherited`).
    static std::pair<uint16_t, std::vector<Ace>> ExplicitDacl(const std::string& dn,
                                                              bool inherited = false) {
        DirObject object;
        if (!BindObject("LDAP://" + dn, object)) return {};
        auto dacl = ReadObjectDacl(object);
        if (!dacl) return {};
        std::vector<Ace> aces;
        for (const Ace& ace : dacl->Aces())
            if (inherited || !ace.IsInherited()) aces.push_back(ace);
        return {dacl->descriptor.Control, aces};
    }

    // A production run of the OU engine for `op` over the CSV lines, as StartAdd_OU and its
    // siblings run it: the column list, the header, the Mirror flags and the object count, the
    // flags the driver clears, the row loop, the summary. Gives the lines of Event.log, which
    // must hold exactly these lines in CP932 with CR LF, so comparing lines compares bytes.
    Lines Run(OperationKind op, const Lines& csvLines) {
        const auto csv = folder / "rows.csv";
        WriteCsv(csv, csvLines);
        PrepareRunColumns(ObjectKind::OU, op);
        EXPECT_TRUE(ReadHeader(csv, gRun.ColumnNames, gRun.ColumnIndex));
        EXPECT_TRUE(ReadMirrorFlags(csv, gRun.MirrorFlags));
        gRun.lngObjectCnt = CountObjects(csv);
        gRun.lngSuccessCnt = gRun.lngFailureCnt = gRun.lngWarningCnt = 0;
        gRun.blnRowWarned = false;
        gRun.intCancel = 0;
        if (op == OperationKind::Add || op == OperationKind::Mdf) gRun.blnRowFailed = false;
        if (op == OperationKind::Add) gRun.blnRowCreatedObject = false;
        std::filesystem::remove(gRun.strEventLogPath);
        requests = gSession.Connection->RequestCount();
        RunRows_OU(csv, static_cast<RowOperation>(op), gRun.ColumnIndex);
        requests = gSession.Connection->RequestCount() - requests;
        WriteLogSummary(gRun.strEventLogPath, SummaryKind::RowLoop, gRun.lngObjectCnt);
        Lines log = ReadLines(gRun.strEventLogPath);
        EXPECT_EQ(ReadBytes(gRun.strEventLogPath), DiskBytes(log));
        return log;
    }

    ScratchFolder folder;
    long requests = 0;  // LDAP requests of the last Run
};

// Runs every test of a suite twice: with the fast path, and the exact way alone. Both must
// leave the same log and the same directory.
class BothWays : public OUProdTest, public ::testing::WithParamInterface<bool> {
  protected:
    void SetUp() override {
        OUProdTest::SetUp();
        SetOUFastPath(GetParam());
    }
};

inline std::string WayName(const ::testing::TestParamInfo<bool>& info) {
    return info.param ? "Fast" : "Exact";
}

}  // namespace orin::test
