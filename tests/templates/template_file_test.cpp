// The template files as a run reads them: header on line 1 with every column the run looks
// up, only the sample rows taken for data, CP932 with CR LF throughout, and the notes.

#include <gtest/gtest.h>

#include <algorithm>

#include "TemplateTestSupport.h"
#include "csv/ColumnRegistry.h"
#include "csv/CsvReader.h"
#include "csv/Templates.h"
#include "platform/Cp932.h"
#include "run/RunContext.h"

using namespace orin;
using namespace orin::test;

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD in UTF-8

// The "◆" heads of the blocks under one section heading, in order.
std::vector<std::string> BlockHeads(const std::vector<std::string>& lines,
                                    std::string_view section) {
    std::vector<std::string> heads;
    auto at = std::find(lines.begin(), lines.end(), "#," + std::string(section));
    if (at == lines.end()) return heads;
    for (++at; at != lines.end() && !at->empty(); ++at)
        if (at->starts_with("#,　◆")) heads.push_back(at->substr(2));
    return heads;
}

}  // namespace

TEST(TemplateFile, EveryTemplateIsACsvFileThatARunReadsAsItStands) {
    TemplateScratch scratch;
    for (const TemplatePair& pair : AllTemplatePairs()) {
        SCOPED_TRACE(PairName(pair));
        const auto path = scratch / "template.csv";
        ASSERT_TRUE(WriteTemplate(pair.kind, pair.op, path));

        // CP932 with CR LF: every line ends with the pair, nothing decodes to U+FFFD, and the
        // file decodes back to exactly the lines the generator made (no "?" for a character
        // that CP932 lacks).
        const std::string bytes = ReadFileBytes(path);
        ASSERT_TRUE(bytes.ends_with("\r\n"));
        const std::vector<std::string> raw = SplitCrLf(bytes);
        for (const std::string& line : raw) {
            EXPECT_EQ(line.find('\r'), std::string::npos) << line;
            EXPECT_EQ(line.find('\n'), std::string::npos) << line;
        }
        const std::string text = platform::Cp932ToUtf8(bytes);
        EXPECT_EQ(text.find(kReplacement), std::string::npos);
        const std::vector<std::string> lines = SplitCrLf(text);
        EXPECT_EQ(lines, TemplateLines(pair.kind, pair.op));

        // Line 1 is the header, and ReadHeader finds every column that the run of this pair
        // looks up, Mirror among them.
        ASSERT_FALSE(lines.empty());
        EXPECT_EQ(ClassifyLine(lines[0]), LineKind::Header);
        const std::vector<std::string> names = ColumnNamesFor(pair.kind, pair.op);
        std::vector<int16_t> index(names.size(), -2);
        ASSERT_TRUE(ReadHeader(path, names, index));
        for (size_t i = 0; i < names.size(); ++i) {
            if (names[i].empty()) continue;  // the registry's unused slot
            EXPECT_GE(index[i], 0) << "column " << names[i] << " is missing";
        }
        EXPECT_GE(index[static_cast<size_t>(FindColumnSlot(names, "Mirror"))], 0);

        // Line 2 captions every header cell; the sample rows follow and are the only data
        // rows of the file, each as wide as the header. Everything after them is a blank line
        // or a "#," note line.
        const size_t width = SplitCells(lines[0]).size();
        ASSERT_GE(lines.size(), 3u);
        EXPECT_EQ(ClassifyLine(lines[1]), LineKind::Comment);
        EXPECT_EQ(SplitCells(lines[1]).size(), width);
        size_t samples = 0;
        while (2 + samples < lines.size() && ClassifyLine(lines[2 + samples]) == LineKind::Data) {
            EXPECT_EQ(SplitCells(lines[2 + samples]).size(), width) << lines[2 + samples];
            EXPECT_FALSE(IsRowEmpty(SplitCells(lines[2 + samples])));
            ++samples;
        }
        EXPECT_GE(samples, 2u);
        for (size_t i = 2 + samples; i < lines.size(); ++i) {
            EXPECT_TRUE(lines[i].empty() || lines[i].starts_with("#,")) << lines[i];
            EXPECT_NE(ClassifyLine(lines[i]), LineKind::Data) << lines[i];
        }

        // The readers of a driver agree: one flag per sample row, none invalid, the first row
        // starting an object, and at least one Mirror row to show the feature.
        std::vector<std::string> flags;
        ASSERT_TRUE(ReadMirrorFlags(path, flags));
        EXPECT_EQ(gRun.lngDataRowCnt, static_cast<int32_t>(samples));
        ASSERT_EQ(flags.size(), samples + 1);
        EXPECT_EQ(flags[1], "N");
        EXPECT_EQ(std::count(flags.begin(), flags.end(), "?"), 0);
        const auto mirrorRows = std::count(flags.begin(), flags.end(), "Y");
        EXPECT_GE(mirrorRows, 1);
        EXPECT_EQ(CountObjects(path), static_cast<int32_t>(samples) - mirrorRows);

        // Two empty lines, then the overview naming the template, and the closing remark.
        ASSERT_GE(lines.size(), 2 + samples + 4);
        EXPECT_EQ(lines[2 + samples], "");
        EXPECT_EQ(lines[3 + samples], "");
        EXPECT_EQ(lines[4 + samples], "#,【概要】");
        EXPECT_EQ(lines[5 + samples],
                  "#,　◆ このファイルは[" + PairName(pair) + "]用のテンプレートです。");
        EXPECT_EQ(lines.back(), "#,　◆ 詳しくは「ORIN」のオンラインヘルプをご参照ください。");
        EXPECT_EQ(lines[lines.size() - 2], "#,【備考】");
    }
}

TEST(TemplateFile, OuAddHeaderAndCaptionsAreThoseOfTheFormat) {
    const std::vector<std::string> lines = TemplateLines(ObjectKind::OU, OperationKind::Add);
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ(lines[0],
              "!OU-Start,,,OU-End,Mirror,c,postalCode,st,l,street,description,MgrOU-Start,"
              "MgrOU-End,MgrRDN,InheritParentACL,RemDefaultACL,DoNotRemTheseACE,"
              "AceSamAccountName,AceOpeMode,AccessRight,PermitOrDeny,InheritOption");
    EXPECT_EQ(lines[1],
              "#最上位階層OU名またはデフォルトコンテナ名,第2階層OU名,第3階層OU名,最下位階層OU名,"
              "ミラー,国/地域,郵便番号,都道府県,市区町村,番地,説明,"
              "管理者所在OUの最上位階層OU名またはデフォルトコンテナ名,管理者所在OUの最下位階層OU名,"
              "管理者の名前,親コンテナからのアクセス許可の継承モード,"
              "既定のACL（アクセス制御リスト）を削除するか,"
              "既定のACLを削除する場合に削除対象外にするACE（アクセス制御エントリ）のSAMアカウ"
              "ント名,設定するACEのSAMアカウント名,ACE操作モード,アクセス許可,許可か拒否,"
              "ACEの適用先");

    // Nine sample rows: six OUs, parents first, and three Mirror rows that add an ACE.
    std::vector<std::string> rows(lines.begin() + 2, lines.begin() + 11);
    EXPECT_EQ(lines[11], "");
    EXPECT_EQ(rows[1], "IT事業本部,,,,Yes,,,,,,,,,,,,,Domain Guests,0,1;2,D,3");
    EXPECT_NE(rows[0].find("<Rtn>"), std::string::npos);
    for (const std::string& row : rows) {
        const auto cells = SplitCells(row);
        if (cells[4] == "Yes") continue;
        EXPECT_EQ(cells[11], "Users") << row;
        EXPECT_EQ(cells[13], "Administrator") << row;
        EXPECT_FALSE(cells[17].empty()) << row;  // an ACE
    }
}

TEST(TemplateFile, OuDelNotesByteForByte) {
    TemplateScratch scratch;
    const auto path = scratch / "ou_del.csv";
    ASSERT_TRUE(CreateTmpFile_OUDel(path));
    const std::string bytes = ReadFileBytes(path);

    const std::string notes =
        "#,【概要】\r\n"
        "#,　◆ このファイルは[組織単位の削除]用のテンプレートです。\r\n"
        "\r\n"
        "#,【説明】\r\n"
        "#,　◆ 行の先頭に「!」記号が付くとヘッダ行と見なします。ヘッダ行は絶対に修正しないでくだ"
        "さい。\r\n"
        "#,　◆ 行の先頭に「#」記号が付くとコメント行と見なします。\r\n"
        "#,　◆ 行の先頭に上記の記号がなければデータ行と見なします。\r\n"
        "#,　◆ OU（またはオブジェクトの所在OU）が2階層以上の場合は、OUの定義ヘッダの間に必要な"
        "だけ列を増やしてください。増分列にはヘッダを定義する必要がありません。\r\n"
        "#,　◆ ヘッダ「Mirror」の入力規約\r\n"
        "#,　　・ 入力値：　Yes　→　ミラー（削除処理を行わない）\r\n"
        "#,　　・ 入力値：　No（または入力しない）　→　ミラーでない（削除処理を行う）\r\n"
        "#,　◆ ヘッダ「IfDelSubObj」の入力規約\r\n"
        "#,　　・ 入力値：　Yes　→　OU配下のすべてのオブジェクトを削除する\r\n"
        "#,　　・ 入力値：　No（または入力しない）　→　OUの配下にオブジェクトが存在しなければOU"
        "を削除するが、存在すればOUを削除しない\r\n"
        "\r\n"
        "#,【備考】\r\n"
        "#,　◆ 詳しくは「ORIN」のオンラインヘルプをご参照ください。\r\n";
    const std::string expected = platform::Utf8ToCp932(notes);
    ASSERT_TRUE(bytes.ends_with(expected)) << platform::Cp932ToUtf8(bytes);
    EXPECT_EQ(bytes.substr(bytes.size() - expected.size() - 4, 4), "\r\n\r\n");  // two empty lines

    // The indentation is the ideographic blank, 81 40 in CP932, and the head mark 81 9F.
    EXPECT_NE(expected.find("#,\x81\x40\x81\x9F"), std::string::npos);
    EXPECT_EQ(expected.find("#, "), std::string::npos);
}

TEST(TemplateFile, GeneralLinesAndTheBlocksThatOnlySomeTemplatesHave) {
    const std::string fifth =
        "　◆ オブジェクト（OU以外）がドメインの直下にある場合は、オブジェクト所在OUの定義ヘッダに"
        "対応する全データを空白のままにしてください。";
    const std::string mdf =
        "　◆ 新しいプロパティに入力なしの場合は、現在の設定値が変更されません。現在の設定値をク"
        "リアするには、「!C」を入力してください。";
    const std::string mov =
        "　◆ OUをドメインの直下に移動する場合は、移動先の定義ヘッダに対応する全データを空白のまま"
        "にしてください。";
    const auto is = [](const TemplatePair& p, ObjectKind kind, OperationKind op) {
        return p.kind == kind && p.op == op;
    };

    for (const TemplatePair& pair : AllTemplatePairs()) {
        SCOPED_TRACE(PairName(pair));
        const std::vector<std::string> heads =
            BlockHeads(TemplateLines(pair.kind, pair.op), "【説明】");
        const auto has = [&](const std::string& head) {
            return std::find(heads.begin(), heads.end(), head) != heads.end();
        };
        // The OU Del template has no objects other than OUs to speak of.
        EXPECT_EQ(has(fifth), !is(pair, ObjectKind::OU, OperationKind::Del));
        // The modify line in the modify templates, except the computer's.
        EXPECT_EQ(has(mdf), pair.op == OperationKind::Mdf && pair.kind != ObjectKind::Computer);
        EXPECT_EQ(has(mov), is(pair, ObjectKind::OU, OperationKind::Mov));
        // Every template explains Mirror right after the general lines and its own line.
        const size_t first = (has(fifth) ? 5 : 4) + (has(mdf) || has(mov) ? 1 : 0);
        ASSERT_GT(heads.size(), first);
        EXPECT_EQ(heads[first], "　◆ ヘッダ「Mirror」の入力規約");

        // 【注意】 only where adding or renaming needs care.
        const bool cautions = is(pair, ObjectKind::OU, OperationKind::Add) ||
                              is(pair, ObjectKind::OU, OperationKind::Mdf) ||
                              (pair.kind == ObjectKind::Group &&
                               (pair.op == OperationKind::Add || pair.op == OperationKind::Mdf)) ||
                              (pair.kind == ObjectKind::User &&
                               (pair.op == OperationKind::Add || pair.op == OperationKind::Mdf));
        EXPECT_EQ(BlockHeads(TemplateLines(pair.kind, pair.op), "【注意】").empty(), !cautions);
    }

    // The name blocks of the group and computer move templates.
    const auto groupMov =
        BlockHeads(TemplateLines(ObjectKind::Group, OperationKind::Mov), "【説明】");
    EXPECT_EQ(groupMov.back(), "　◆ 「グループ名」の変更について");
    const auto computerMov =
        BlockHeads(TemplateLines(ObjectKind::Computer, OperationKind::Mov), "【説明】");
    EXPECT_EQ(computerMov.back(), "　◆ 「コンピュータ名」の変更について");
}

TEST(TemplateFile, ValueEntriesOfTheAddAndTheModifyDiffer) {
    const auto contains = [](const std::vector<std::string>& lines, const std::string& line) {
        return std::find(lines.begin(), lines.end(), "#," + line) != lines.end();
    };
    const auto userAdd = TemplateLines(ObjectKind::User, OperationKind::Add);
    const auto userMdf = TemplateLines(ObjectKind::User, OperationKind::Mdf);

    // A blank cell is No in an add, and keeps the value in a modify.
    const std::string noOrBlank =
        "　　・ 入力値：　No（または入力しない）　→　パスワードを無期限にしない";
    EXPECT_TRUE(contains(userAdd, noOrBlank));
    EXPECT_FALSE(contains(userMdf, noOrBlank));
    EXPECT_TRUE(contains(userMdf, "　　・ 入力値：　No　→　パスワードを無期限にしない"));
    EXPECT_TRUE(contains(userAdd, "　　・ 入力値：　No　→　アカウントは有効"));

    // Dial-in: "なし" in the add, "!C" in the modify; the expiry's "!C" line only in the modify.
    const std::string expiryClear =
        "　　・ アカウントの有効期限を「なし」にするは、「!C」を入力してください。";
    EXPECT_TRUE(contains(userMdf, expiryClear));
    EXPECT_FALSE(contains(userAdd, expiryClear));
    const auto dialin = [](const std::vector<std::string>& lines, std::string_view value) {
        const std::string prefix = "#,　　・ 入力値：　" + std::string(value) + "　→　リモートアク";
        return std::any_of(lines.begin(), lines.end(),
                           [&](const std::string& l) { return l.starts_with(prefix); });
    };
    EXPECT_TRUE(dialin(userAdd, "なし"));
    EXPECT_TRUE(dialin(userMdf, "!C"));
    EXPECT_FALSE(dialin(userAdd, "!C"));

    // The OU modify keeps the inheritance as it is for an empty cell.
    const auto ouMdf = TemplateLines(ObjectKind::OU, OperationKind::Mdf);
    EXPECT_TRUE(contains(ouMdf, "　　・ 入力値：　なし　→　現状維持"));
    EXPECT_FALSE(contains(TemplateLines(ObjectKind::OU, OperationKind::Add),
                          "　　・ 入力値：　なし　→　現状維持"));
}

TEST(TemplateFile, SelectorsPickTheOperationAndReportAFailedWrite) {
    TemplateScratch scratch;
    const auto path = scratch / "selected.csv";
    const auto written = [&] { return SplitCrLf(platform::Cp932ToUtf8(ReadFileBytes(path))); };

    using Selector = bool (*)(int16_t, const std::filesystem::path&);
    const std::vector<std::pair<ObjectKind, Selector>> selectors = {
        {ObjectKind::OU, CreateOUTemplateFile},
        {ObjectKind::Group, CreateGrpTemplateFile},
        {ObjectKind::User, CreateUsrTemplateFile},
        {ObjectKind::Computer, CreateComTemplateFile},
        {ObjectKind::SharedFolder, CreateShareTemplateFile}};
    for (const auto& [kind, select] : selectors) {
        SCOPED_TRACE(TemplateName(kind, OperationKind::Add));
        // 0 Add, 1 Del, 2 Mov; 3 and anything else Mdf.
        const std::vector<std::pair<int16_t, OperationKind>> options = {
            {0, OperationKind::Add}, {1, OperationKind::Del}, {2, OperationKind::Mov},
            {3, OperationKind::Mdf}, {7, OperationKind::Mdf}, {-1, OperationKind::Mdf}};
        for (const auto& [option, op] : options) {
            ASSERT_TRUE(select(option, path));
            EXPECT_EQ(written(), TemplateLines(kind, op)) << "option " << option;
        }
    }

    EXPECT_TRUE(CreateTmpFile_GrpMov(path));
    EXPECT_EQ(written(), TemplateLines(ObjectKind::Group, OperationKind::Mov));

    // A folder that doesn't exist, or a folder in place of the file: the open fails.
    EXPECT_FALSE(CreateTmpFile_UsrAdd(scratch / "missing" / "t.csv"));
    EXPECT_FALSE(CreateTmpFile_UsrAdd(scratch / ""));
    // No template for GPO links or for an export.
    EXPECT_FALSE(HasTemplate(ObjectKind::GpoLink, OperationKind::Add));
    EXPECT_FALSE(HasTemplate(ObjectKind::OU, OperationKind::Exp));
    EXPECT_FALSE(WriteTemplate(ObjectKind::GpoLink, OperationKind::Exp, path));
    EXPECT_TRUE(TemplateLines(ObjectKind::User, OperationKind::Exp).empty());
}
