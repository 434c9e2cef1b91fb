#include <gtest/gtest.h>

#include <set>
#include <span>

#include "CsvTestFiles.h"
#include "base/RunContext.h"
#include "csv/ColumnRegistry.h"
#include "csv/CsvReader.h"
#include "platform/Strings.h"

using namespace orin;

namespace {

const std::vector<ObjectKind> kKinds = {ObjectKind::OU,           ObjectKind::Group,
                                        ObjectKind::User,         ObjectKind::Computer,
                                        ObjectKind::SharedFolder, ObjectKind::GpoLink};

using NameSet = std::multiset<std::string>;

NameSet Folded(const std::vector<std::string>& names) {
    NameSet out;
    for (const std::string& n : names)
        if (!n.empty()) out.insert(ToLowerAscii(n));
    return out;
}

NameSet Folded(std::span<const std::string_view> names) {
    return Folded(std::vector<std::string>(names.begin(), names.end()));
}

NameSet Plus(NameSet set, const std::vector<std::string>& more) {
    NameSet extra = Folded(more);
    set.insert(extra.begin(), extra.end());
    return set;
}

NameSet Minus(NameSet set, const std::vector<std::string>& less) {
    for (const std::string& n : Folded(less)) set.erase(n);
    return set;
}

NameSet Names(ObjectKind kind, OperationKind op, bool compareOfExport = false) {
    return Folded(ColumnNamesFor(kind, op, compareOfExport));
}

}  // namespace

// The lists are kept in the engines' order, so their contents are checked here against how
// the runs of one kind relate: modify knows what add knows and more, the compare of an export
// reads what the export writes, delete and move know only the object and its new place.
TEST(ColumnRegistry, EveryRunKnowsExactlyItsNames) {
    using K = ObjectKind;
    using O = OperationKind;
    const std::vector<std::string> acl = {"RemDefaultACL", "DoNotRemTheseACE", "AceSamAccountName",
                                          "AceOpeMode",    "AccessRight",      "PermitOrDeny",
                                          "InheritOption", "InheritParentACL"};
    const NameSet del = Folded(std::vector<std::string>{"OU-Start", "OU-End", "RDN", "Mirror"});
    const NameSet mov = Plus(del, {"NewOU-Start", "NewOU-End", "NewRDN"});

    EXPECT_EQ(Names(K::OU, O::Mdf), Plus(Names(K::OU, O::Add), {"NewRDN", "postOfficeBox"}));
    EXPECT_EQ(Names(K::OU, O::Add, true), Minus(Names(K::OU, O::Add), acl));
    EXPECT_EQ(Names(K::OU, O::Del), Plus(Minus(del, {"RDN"}), {"IfDelSubObj"}));
    EXPECT_EQ(Names(K::OU, O::Mov), Minus(mov, {"RDN"}));

    EXPECT_EQ(Names(K::Group, O::Mdf),
              Plus(Names(K::Group, O::Add),
                   {"NewRDN", "MemberProcFlg", "GroupProcFlg", "ClearAllMember", "ClearAllGroup"}));
    EXPECT_EQ(Names(K::Group, O::Add, true), Names(K::Group, O::Add));
    EXPECT_EQ(Names(K::User, O::Mdf),
              Plus(Names(K::User, O::Add), {"NewRDN", "GroupProcFlg", "ClearAllGroup"}));
    EXPECT_EQ(Names(K::User, O::Add, true),
              Plus(Names(K::User, O::Add), {"LastLogin", "PasswordLastChanged"}));
    EXPECT_EQ(Names(K::Computer, O::Mdf),
              Plus(Names(K::Computer, O::Add), {"NewRDN", "ClearAllGroup", "GroupProcFlg"}));
    EXPECT_EQ(
        Names(K::Computer, O::Add, true),
        Plus(Names(K::Computer, O::Add), {"dNSHostName", "OperatingSystem",
                                          "OperatingSystemVersion", "operatingSystemServicePack"}));
    EXPECT_EQ(Names(K::SharedFolder, O::Mdf), Plus(Names(K::SharedFolder, O::Add), {"NewRDN"}));
    EXPECT_EQ(Names(K::SharedFolder, O::Add, true), Names(K::SharedFolder, O::Add));
    EXPECT_EQ(Names(K::GpoLink, O::Exp), Plus(del, {"displayName"}));
    EXPECT_TRUE(Names(K::GpoLink, O::Add).empty());  // GPO links have no run but this one

    for (K kind : {K::Group, K::User, K::Computer, K::SharedFolder}) {
        EXPECT_EQ(Names(kind, O::Del), del);
        EXPECT_EQ(Names(kind, O::Mov), mov);
    }
    EXPECT_EQ(Names(K::User, O::Add).size(), 40u);
    EXPECT_EQ(Names(K::Computer, O::Add).size(), 14u);
    for (K kind : kKinds) {
        // Exp and the compare flag select one list; the export file holds the same set.
        EXPECT_EQ(Names(kind, O::Exp), Names(kind, O::Add, true));
        EXPECT_EQ(Folded(ExportColumnNames(kind)), Names(kind, O::Exp));
    }
}

TEST(ColumnRegistry, EveryNameOfEveryListHasACaption) {
    for (ObjectKind kind : kKinds) {
        for (OperationKind op : {OperationKind::Add, OperationKind::Del, OperationKind::Mov,
                                 OperationKind::Mdf, OperationKind::Exp})
            for (const std::string& name : ColumnNamesFor(kind, op)) {
                if (name.empty()) continue;
                EXPECT_FALSE(ColumnCaption(kind, name).empty())
                    << static_cast<int>(kind) << " " << name;
            }
        // Any case finds the caption; a name the kind doesn't have gets none.
        EXPECT_EQ(ColumnCaption(kind, "MIRROR"), "ミラー");
        EXPECT_EQ(ColumnCaption(kind, "NoSuchColumn"), "");
        EXPECT_EQ(ColumnCaption(kind, ""), "");
    }
    // Some names read differently by kind; a name the kind has no list with gets nothing.
    EXPECT_EQ(ColumnCaption(ObjectKind::Group, "RDN"), "グループ名");
    EXPECT_EQ(ColumnCaption(ObjectKind::User, "rdn"), "フルネーム");
    EXPECT_EQ(ColumnCaption(ObjectKind::OU, "RDN"), "");
    EXPECT_EQ(ColumnCaption(ObjectKind::User, "IfDelSubObj"), "");
}

TEST(ColumnRegistry, EnginesFindCellsByName) {
    PrepareRunColumns(ObjectKind::Group, OperationKind::Del);
    ASSERT_EQ(gRun.ColumnNames, (std::vector<std::string>{"OU-Start", "OU-End", "RDN", "Mirror"}));
    EXPECT_EQ(gRun.ColumnIndex, (std::vector<int16_t>(4, -1)));

    auto p =
        csvtest::WriteCsv("lookup.csv", "!OU-Start,,OU-End,mirror,Rdn\r\n営業部,一課,,,G1\r\n");
    ASSERT_TRUE(ReadHeader(p, gRun.ColumnNames, gRun.ColumnIndex));
    EXPECT_EQ(ColumnIndexOf("RDN"), 4);
    EXPECT_EQ(ColumnIndexOf("ou-end"), 2);
    EXPECT_EQ(ColumnIndexOf("NewRDN"), -1);  // not a name of this run
    EXPECT_EQ(FindColumnSlot(gRun.ColumnNames, "MIRROR"), 3);
    EXPECT_EQ(FindColumnSlot(gRun.ColumnNames, ""), -1);

    std::vector<std::string> cells = SplitCells("営業部,一課,,,G1");
    EXPECT_EQ(CellOf(cells, "RDN"), "G1");
    EXPECT_EQ(CellOf(cells, "OU-Start"), "営業部");
    EXPECT_EQ(CellOf(cells, "NewRDN"), "");
    EXPECT_EQ(CellOf(SplitCells("営業部"), "RDN"), "");  // a short row
}
