#pragma once
// Shared by the OU imitate, compare and export tests: a test connected to the test DC with an OU
// of its own, that runs CSV files through the OU row loop as a run's start method would, and
// reads back the event log.
//
// Rows name OUs below the test's OU: "{T}" in a CSV line stands for its name, so "{T},a" is the
// OU "OU=a,OU=<test>".

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "csv/ColumnRegistry.h"
#include "csv/CsvReader.h"
#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "engines/ou/OUModes.h"
#include "platform/Cp932.h"
#include "platform/Strings.h"
#include "run/RowLoop.h"
#include "run/RunContext.h"
#include "run/RunTestSupport.h"
#include "support/TestDc.h"

namespace orin::test {

using Attributes = std::vector<std::pair<std::string, std::string>>;

class OUModesTest : public DcTest {
  protected:
    void SetUp() override {
        DcTest::SetUp();
        folder_ = std::make_unique<ScratchFolder>();
        ResetRun(folder_->path());
        RegisterOUModeEngines();
    }

    const std::filesystem::path& Folder() const { return folder_->path(); }
    std::filesystem::path LogPath() const { return folder_->path() / "Event.log"; }

    // The test OU's name: the top cell of every row.
    std::string Top() { return RdnValue(ou().Rdn()); }

    // The OU path of "a,b" (top level first) below the test OU: "OU=b,OU=a,OU=<test>".
    std::string PathOf(std::string_view names) {
        std::string path = ou().Rdn();
        for (const std::string& name : Split(names, ',')) path = "OU=" + name + "," + path;
        return path;
    }
    std::string DnOf(std::string_view names) { return PathOf(names) + "," + gSession.DomainDN; }
    bool Exists(std::string_view names) {
        DirObject object;
        return BindObject("LDAP://" + DnOf(names), object);
    }

    // Makes the OU "a,b" below the test OU, with the given attributes.
    DirObject MakeOU(std::string_view names, const Attributes& attributes = {}) {
        return Make("organizationalUnit", PathOf(names), attributes);
    }
    // Makes a user "cn" in the OU "names" ("" for the test OU); gives its distinguished name.
    std::string MakeUser(std::string_view names, std::string_view cn) {
        const std::string container = names.empty() ? ou().Rdn() : PathOf(names);
        const std::string relative = "CN=" + std::string(cn) + "," + container;
        Make("user", relative, {{"sAMAccountName", Sam(cn)}});
        return relative + "," + gSession.DomainDN;
    }
    // An account name unique in the domain for the test's `cn`.
    static std::string Sam(std::string_view cn) {
        return std::string(cn.substr(0, 8)) + std::to_string(getpid());
    }

    DirObject Make(std::string_view cls, const std::string& relative,
                   const Attributes& attributes) {
        auto created = gSession.RootObject.Create(cls, relative);
        EXPECT_TRUE(created.ok()) << relative << ": " << created.status().message;
        if (!created.ok()) return {};
        for (const auto& [name, value] : attributes) created->Put(name, value);
        DirStatus status = created->SetInfo();
        EXPECT_TRUE(status.ok()) << relative << ": " << status.message;
        DirObject bound;
        EXPECT_TRUE(BindObject("LDAP://" + relative + "," + gSession.DomainDN, bound));
        return bound;
    }

    // Writes `lines` as the run's CSV file (CP932, CR LF) and runs them through RunRows_OU with
    // `op` as the RowOperation, on a run reset as a driver resets it. Gives the text of the event
    // log, which holds this run's lines alone.
    std::string Run(RowOperation op, std::vector<std::string> lines) {
        for (std::string& line : lines) line = ReplaceAll(line, "{T}", Top());
        const std::filesystem::path csv = Folder() / "rows.csv";
        WriteCsv(csv, lines);

        ResetRun(Folder());
        std::filesystem::remove(LogPath());
        gRun.strCsvPath = csv.string();
        gRun.blnImitate = op >= 4 && op <= 7;
        gRun.blnCompare = op >= 8;
        const auto kind =
            op == kCompareOfExport ? OperationKind::Exp : static_cast<OperationKind>(op % 4);
        PrepareRunColumns(ObjectKind::OU, kind, op == kCompareOfExport);
        EXPECT_TRUE(ReadHeader(csv, gRun.ColumnNames, gRun.ColumnIndex));
        EXPECT_TRUE(ReadMirrorFlags(csv, gRun.MirrorFlags));
        RunRows_OU(csv, op, gRun.ColumnIndex);
        return Log();
    }

    // The event log as text: UTF-8, lines ended by CR LF as on disk.
    std::string Log() const { return platform::Cp932ToUtf8(ReadBytes(LogPath())); }

    // The log text of these lines.
    static std::string Lines(std::initializer_list<std::string> lines) {
        std::string text;
        for (const std::string& line : lines) text += line + "\r\n";
        return text;
    }

  private:
    std::unique_ptr<ScratchFolder> folder_;
};

}  // namespace orin::test
