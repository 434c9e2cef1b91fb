// The template files as a run reads them: header on line 1 with every column the run looks
// up, only the sample rows taken for data, CP932 with CR LF throughout, and the notes.

#include <gtest/gtest.h>

#include <algorithm>

#include "TemplateTestSupport.h"
#include "base/RunContext.h"
#include "csv/ColumnRegistry.h"
#include "csv/CsvReader.h"
#include "csv/Templates.h"
#include "platform/Cp932.h"

using namespace orin;
using namespace orin::test;

namespace {

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

bool Contains(const std::vector<std::string>& lines, const std::string& line) {
    return std::find(lines.begin(), lines.end(), line) != lines.end();
}

}  // namespace

TEST(TemplateFile, EveryTemplateIsACsvFileThatARunReadsAsItStands) {
    ScratchFolder folder;
    const auto path = folder / "template.csv";
    for (const TemplatePair& pair : AllTemplatePairs()) {
        SCOPED_TRACE(pair.Name());
        ASSERT_TRUE(WriteTemplate(pair.kind, pair.op, path));

        // CP932 with CR LF, and every character has a CP932 form (none is written as "?").
        const std::vector<std::string> lines = TemplateLines(pair.kind, pair.op);
        EXPECT_EQ(ReadBytes(path), DiskBytes(lines));
        for (const std::string& line : lines) {
            EXPECT_EQ(line.find_first_of("\r\n"), std::string::npos) << line;
            EXPECT_EQ(platform::Cp932ToUtf8(platform::Utf8ToCp932(line)), line);
        }

        // Line 1 is the header, and ReadHeader finds every column that the run of this pair
        // looks up.
        ASSERT_GE(lines.size(), 3u);
        EXPECT_EQ(ClassifyLine(lines[0]), LineKind::Header);
        const std::vector<std::string> names = ColumnNamesFor(pair.kind, pair.op);
        std::vector<int16_t> index;
        ASSERT_TRUE(ReadHeader(path, names, index));
        for (size_t i = 0; i < names.size(); ++i) {
            if (!names[i].empty()) {
                EXPECT_GE(index[i], 0) << "column " << names[i] << " missing";
            }
        }

        // Line 2 captions every header cell; the sample rows follow, each as wide as the header,
        // and are the only data rows: the notes are "#," lines and empty lines.
        const size_t width = SplitCells(lines[0]).size();
        EXPECT_EQ(ClassifyLine(lines[1]), LineKind::Comment);
        EXPECT_EQ(SplitCells(lines[1]).size(), width);
        size_t samples = 0;
        for (; 2 + samples < lines.size() && ClassifyLine(lines[2 + samples]) == LineKind::Data;
             ++samples)
            EXPECT_EQ(SplitCells(lines[2 + samples]).size(), width) << lines[2 + samples];
        for (size_t i = 2 + samples; i < lines.size(); ++i)
            EXPECT_TRUE(lines[i].empty() || lines[i].starts_with("#,")) << lines[i];

        // The readers of a driver agree: one flag per sample row, none invalid, the first row
        // starting an object, and at least one Mirror row to show the feature.
        std::vector<std::string> flags;
        ASSERT_TRUE(ReadMirrorFlags(path, flags));
        EXPECT_GE(samples, 2u);
        EXPECT_EQ(gRun.lngDataRowCnt, static_cast<int32_t>(samples));
        EXPECT_EQ(flags.at(1), "N");
        EXPECT_EQ(std::count(flags.begin(), flags.end(), "?"), 0);
        const auto mirrorRows = std::count(flags.begin(), flags.end(), "Y");
        EXPECT_GE(mirrorRows, 1);
        EXPECT_EQ(CountObjects(path), static_cast<int32_t>(samples) - mirrorRows);

        // Two empty lines, then the overview naming the template; the closing remark at the end.
        ASSERT_GE(lines.size(), samples + 8);
        EXPECT_EQ(std::vector(lines.begin() + 2 + samples, lines.begin() + 6 + samples),
                  (std::vector<std::string>{
                      "", "", "#,【概要】",
                      "#,　◆ このファイルは[" + pair.Name() + "]用のテンプレートです。"}));
        EXPECT_EQ(std::vector(lines.end() - 2, lines.end()),
                  (std::vector<std::string>{
                      "#,【備考】", "#,　◆ 詳しくは「ORIN」のオンラインヘルプをご参照ください。"}));
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

    // Nine sample rows, then the empty lines.
    EXPECT_EQ(lines.at(11), "");
    EXPECT_EQ(lines[3], "IT事業本部,,,,Yes,,,,,,,,,,,,,Domain Guests,0,1;2,D,3");
    EXPECT_NE(lines[2].find("<Rtn>"), std::string::npos);
}

TEST(TemplateFile, OuDelNotesByteForByte) {
    ScratchFolder folder;
    const auto path = folder / "ou_del.csv";
    ASSERT_TRUE(CreateTmpFile_OUDel(path));
    const std::string bytes = ReadBytes(path);

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

    for (const TemplatePair& pair : AllTemplatePairs()) {
        SCOPED_TRACE(pair.Name());
        const std::vector<std::string> heads =
            BlockHeads(TemplateLines(pair.kind, pair.op), "【説明】");
        const auto has = [&](const std::string& head) {
            return std::find(heads.begin(), heads.end(), head) != heads.end();
        };
        // The OU Del template has no objects other than OUs to speak of.
        EXPECT_EQ(has(fifth), !pair.Is(ObjectKind::OU, OperationKind::Del));
        // The modify line in the modify templates, except the computer's.
        EXPECT_EQ(has(mdf), pair.op == OperationKind::Mdf && pair.kind != ObjectKind::Computer);
        EXPECT_EQ(has(mov), pair.Is(ObjectKind::OU, OperationKind::Mov));
        // Every template explains Mirror right after the general lines and its own line.
        const size_t first = (has(fifth) ? 5 : 4) + (has(mdf) || has(mov) ? 1 : 0);
        ASSERT_GT(heads.size(), first);
        EXPECT_EQ(heads[first], "　◆ ヘッダ「Mirror」の入力規約");

        // 【注意】 only where adding or renaming needs care.
        const bool cautions = (pair.op == OperationKind::Add || pair.op == OperationKind::Mdf) &&
                              (pair.kind == ObjectKind::OU || pair.kind == ObjectKind::Group ||
                               pair.kind == ObjectKind::User);
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
    const auto userAdd = TemplateLines(ObjectKind::User, OperationKind::Add);
    const auto userMdf = TemplateLines(ObjectKind::User, OperationKind::Mdf);
    const auto ouAdd = TemplateLines(ObjectKind::OU, OperationKind::Add);
    const auto ouMdf = TemplateLines(ObjectKind::OU, OperationKind::Mdf);

    // A blank cell is No in an add, and keeps the value in a modify, which clears with "!C".
    const std::string noOrBlank =
        "#,　　・ 入力値：　No（または入力しない）　→　パスワードを無期限にしない";
    EXPECT_TRUE(Contains(userAdd, noOrBlank));
    EXPECT_FALSE(Contains(userMdf, noOrBlank));
    EXPECT_TRUE(Contains(userMdf, "#,　　・ 入力値：　No　→　パスワードを無期限にしない"));
    const std::string expiryClear =
        "#,　　・ アカウントの有効期限を「なし」にするは、「!C」を入力してください。";
    EXPECT_TRUE(Contains(userMdf, expiryClear));
    EXPECT_FALSE(Contains(userAdd, expiryClear));
    // The OU modify keeps the inheritance as it is for an empty cell.
    EXPECT_TRUE(Contains(ouMdf, "#,　　・ 入力値：　なし　→　現状維持"));
    EXPECT_FALSE(Contains(ouAdd, "#,　　・ 入力値：　なし　→　現状維持"));
}

TEST(TemplateFile, SelectorsPickTheOperationAndReportAFailedWrite) {
    ScratchFolder folder;
    const auto path = folder / "selected.csv";

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
            EXPECT_EQ(ReadLines(path), TemplateLines(kind, op)) << "option " << option;
        }
    }

    // A folder that doesn't exist, or a folder in place of the file: the open fails.
    EXPECT_FALSE(CreateTmpFile_UsrAdd(folder / "missing" / "t.csv"));
    EXPECT_FALSE(CreateTmpFile_UsrAdd(folder / ""));
    // No template for GPO links or for an export.
    EXPECT_FALSE(HasTemplate(ObjectKind::GpoLink, OperationKind::Add));
    EXPECT_FALSE(HasTemplate(ObjectKind::OU, OperationKind::Exp));
    EXPECT_FALSE(WriteTemplate(ObjectKind::GpoLink, OperationKind::Exp, path));
    EXPECT_TRUE(TemplateLines(ObjectKind::User, OperationKind::Exp).empty());
}
