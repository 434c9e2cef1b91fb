#pragma once
// Shared by the OU production tests: a CSV written by the test (CP932, CR LF), run through the
// row loop with the production engines the way a driver prepares it, and the Event.log that the
// run leaves. Each test works in an OU of its own on the test domain controller.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
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

// The columns of a CSV file in file order. A name with a "." in it ("OU.2") is an unnamed
// column inside a span: its header cell is empty.
class Csv {
  public:
    explicit Csv(std::vector<std::string> columns) : columns_(std::move(columns)) {}

    std::string Header() const {
        std::vector<std::string> cells;
        for (const std::string& c : columns_)
            cells.push_back(c.find('.') == std::string::npos ? c : "");
        return "!" + Join(cells, ",");
    }

    // A data line from cells by column name; columns not named stay empty.
    std::string Row(const std::map<std::string, std::string>& cells) const {
        std::vector<std::string> line;
        for (const std::string& c : columns_) {
            auto it = cells.find(c);
            line.push_back(it == cells.end() ? "" : it->second);
        }
        return Join(line, ",");
    }

  private:
    std::vector<std::string> columns_;
};

// The columns of a span of `width` cells: "OU-Start", "OU.2", ..., "OU-End".
inline std::vector<std::string> SpanColumns(const std::string& prefix, int width) {
    std::vector<std::string> names{prefix + "-Start"};
    for (int i = 2; i < width; ++i) names.push_back(prefix + "." + std::to_string(i));
    names.push_back(prefix + "-End");
    return names;
}

// The cells of a span, top level first, by the names SpanColumns gives.
inline std::map<std::string, std::string> SpanCells(const std::string& prefix, int width,
                                                    const std::vector<std::string>& levels) {
    std::vector<std::string> names = SpanColumns(prefix, width);
    std::map<std::string, std::string> cells;
    for (size_t i = 0; i < levels.size() && i < names.size(); ++i) cells[names[i]] = levels[i];
    return cells;
}

inline std::map<std::string, std::string> operator+(std::map<std::string, std::string> a,
                                                    const std::map<std::string, std::string>& b) {
    for (const auto& [k, v] : b) a[k] = v;
    return a;
}

// The summary block of a production run as WriteLogSummary writes it.
inline std::vector<std::string> Summary(int objects, int success, int warning, int failure,
                                        bool cancelled = false, int cancelLine = 0) {
    std::vector<std::string> lines = {
        "ｵﾌﾞｼﾞｪｸﾄ総数： " + std::to_string(objects),
        "処理完了数： " + std::to_string(success + warning + failure),
        "処理成功数： " + std::to_string(success),
        "処理警告数： " + std::to_string(warning),
        "処理失敗数： " + std::to_string(failure),
    };
    if (cancelled) {
        lines.push_back("ｷｬﾝｾﾙによる中断の有無： 有");
        lines.push_back("ｷｬﾝｾﾙ時の処理済最終行： " + std::to_string(cancelLine));
    } else {
        lines.push_back("ｷｬﾝｾﾙによる中断の有無： 無");
    }
    lines.push_back(std::string(50, '-'));
    return lines;
}

inline std::vector<std::string> operator+(std::vector<std::string> a,
                                          const std::vector<std::string>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

class OUProdTest : public DcTest {
  protected:
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

    // The test's own OU, the first level of every OU span.
    std::string Top() { return RdnValue(ou().Rdn()); }

    // "OU=c,OU=b,OU=<top>,DC=..." for the levels below the test's OU, top first.
    std::string OuDn(const std::vector<std::string>& below) {
        std::string dn = ou().Dn();
        for (const std::string& level : below) dn = "OU=" + level + "," + dn;
        return dn;
    }

    static bool Exists(const std::string& dn) {
        DirObject object;
        return BindObject("LDAP://" + dn, object);
    }

    // An attribute's one value; "" when it has none or the object isn't there.
    static std::string Attr(const std::string& dn, const std::string& attribute) {
        DirObject object;
        if (!BindObject("LDAP://" + dn, object)) return "<absent>";
        return object.Get(attribute).value_or({});
    }

    // An object of class `cls` directly in the test's OU; `sam` for accounts.
    void Make(const std::string& cls, const std::string& rdn, const std::string& sam = {}) {
        auto made = gSession.RootObject.Create(cls, ou().Relative(rdn));
        ASSERT_TRUE(made.ok()) << made.status().message;
        if (!sam.empty()) made->Put("sAMAccountName", sam);
        DirStatus status = made->SetInfo();
        ASSERT_TRUE(status.ok()) << rdn << ": " << status.message;
    }

    // An account name unique in the domain for this process.
    static std::string Sam(const std::string& base) { return base + std::to_string(getpid()); }

    // The ACEs of `account` on the object at `dn`.
    static std::vector<Ace> AcesOf(const std::string& dn, const std::string& account) {
        std::vector<Ace> aces;
        DirObject object;
        if (!BindObject("LDAP://" + dn, object)) return aces;
        auto dacl = ReadObjectDacl(object);
        if (!dacl) return aces;
        std::string name = TrusteeName(account);
        for (const Ace& ace : dacl->Aces())
            if (IsAceOf(ace, name)) aces.push_back(ace);
        return aces;
    }

    // The explicit ACEs and the control of the object's DACL, for comparing two objects.
    static std::pair<uint16_t, std::vector<Ace>> ExplicitDacl(const std::string& dn) {
        DirObject object;
        if (!BindObject("LDAP://" + dn, object)) return {};
        auto dacl = ReadObjectDacl(object);
        if (!dacl) return {};
        std::vector<Ace> aces;
        for (const Ace& ace : dacl->Aces())
            if (!ace.IsInherited()) aces.push_back(ace);
        return {dacl->descriptor.Control, aces};
    }

    // Runs a production run of the OU engine for `op` over the CSV lines, as StartAdd_OU and
    // its siblings do: the column list, the header, the Mirror flags and the object count, the
    // flags the driver clears, the row loop, then the summary. Gives the lines of Event.log.
    std::vector<std::string> Run(OperationKind op, const std::vector<std::string>& lines) {
        const auto csv = folder / "rows.csv";
        WriteCsv(csv, lines);
        gRun.strCsvPath = csv.string();
        PrepareRunColumns(ObjectKind::OU, op);
        EXPECT_TRUE(ReadHeader(csv, gRun.ColumnNames, gRun.ColumnIndex));
        EXPECT_TRUE(ReadMirrorFlags(csv, gRun.MirrorFlags));
        gRun.lngObjectCnt = CountObjects(csv);
        gRun.lngSuccessCnt = gRun.lngFailureCnt = gRun.lngWarningCnt = 0;
        gRun.blnRowWarned = false;
        gRun.intCancel = 0;
        if (op == OperationKind::Add) gRun.blnRowFailed = gRun.blnRowCreatedObject = false;
        if (op == OperationKind::Mdf) gRun.blnRowFailed = false;
        std::filesystem::remove(gRun.strEventLogPath);
        requests = gSession.Connection->RequestCount();
        RunRows_OU(csv, static_cast<RowOperation>(op), gRun.ColumnIndex);
        requests = gSession.Connection->RequestCount() - requests;
        WriteLogSummary(gRun.strEventLogPath, SummaryKind::RowLoop, gRun.lngObjectCnt);
        // The file holds exactly these lines in CP932 with CR LF: comparing the lines compares
        // the bytes.
        std::vector<std::string> log = ReadLines(gRun.strEventLogPath);
        EXPECT_EQ(LogBytes(), DiskBytes(log));
        return log;
    }

    // The log's bytes for these lines (CP932, CR LF), to compare a block byte for byte.
    std::string LogBytes() const { return ReadBytes(gRun.strEventLogPath); }

    ScratchFolder folder;
    long requests = 0;  // LDAP requests of the last Run
};

}  // namespace orin::test
