// frmCreateTemplate as the operator uses it: the title of the kind, the option of the current
// page, the boxes of an empty name, an existing file and a failed write, and the file dialog.

#include <gtest/gtest.h>

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include "TemplateTestSupport.h"
#include "csv/Templates.h"
#include "platform/Cp932.h"
#include "shell/GuiTestSupport.h"
#include "shell/ShellSupport.h"
#include "shell/frmCreateTemplate.h"
#include "support/ScriptedOperator.h"

using namespace orin;
using namespace orin::shell;
using namespace orin::test;

namespace {

class TemplateDialogTest : public ::testing::Test {
  protected:
    QRadioButton* Option(QWidget& dialog, int i) {
        return Find<QRadioButton>(&dialog, ("optImportType(" + std::to_string(i) + ")").c_str());
    }
    QLineEdit* PathBox(QWidget& dialog) { return Find<QLineEdit>(&dialog, "txtTmpFilePath"); }
    // Types `path` and presses btnCreate on a shown dialog.
    void Create(frmCreateTemplate& dialog, const std::string& path) {
        dialog.show();
        PathBox(dialog)->setText(Q(path));
        Find<QPushButton>(&dialog, "btnCreate")->click();
    }
    // The one box shown, with the dialog's title.
    void ExpectBox(const std::string& text, MsgIcon icon) {
        ASSERT_EQ(op.boxes.size(), 1u);
        EXPECT_EQ(op.boxes[0].title, "ﾃﾝﾌﾟﾚｰﾄﾌｧｲﾙの作成");
        EXPECT_EQ(op.boxes[0].text, text);
        EXPECT_EQ(op.boxes[0].icon, icon);
    }

    ScriptedOperator op;
    ScratchFolder scratch;
};

TEST_F(TemplateDialogTest, TitleNamesTheKindAndTheCurrentPageChoosesTheOption) {
    const std::vector<std::pair<ObjectKind, std::string>> titles = {
        {ObjectKind::OU, "組織単位の管理"},
        {ObjectKind::Group, "ｸﾞﾙｰﾌﾟの管理"},
        {ObjectKind::User, "ﾕｰｻﾞｰの管理"},
        {ObjectKind::Computer, "ｺﾝﾋﾟｭｰﾀの管理"},
        {ObjectKind::SharedFolder, "共有ﾌｫﾙﾀﾞの管理"}};
    for (const auto& [kind, page] : titles) {
        frmCreateTemplate dialog(nullptr, kind, OperationKind::Add);
        EXPECT_EQ(S(dialog.windowTitle()), "ｲﾝﾎﾟｰﾄ用ﾃﾝﾌﾟﾚｰﾄﾌｧｲﾙの作成--" + page);
    }

    for (int page = 0; page < 4; ++page) {
        frmCreateTemplate dialog(nullptr, ObjectKind::User, static_cast<OperationKind>(page));
        for (int i = 0; i < 4; ++i) EXPECT_EQ(Option(dialog, i)->isChecked(), i == page);
    }
    // The export page has no template: the options stay as they are.
    frmCreateTemplate fromExport(nullptr, ObjectKind::OU, OperationKind::Exp);
    EXPECT_TRUE(Option(fromExport, 0)->isChecked());
}

TEST_F(TemplateDialogTest, TheChosenOptionSelectsTheTemplateOfTheKind) {
    const auto path = scratch / "group_mov.csv";
    frmCreateTemplate dialog(nullptr, ObjectKind::Group, OperationKind::Add);
    Option(dialog, 2)->click();
    Create(dialog, "  " + path.string() + "  ");  // half-width blanks around the name go

    EXPECT_TRUE(op.boxes.empty());
    EXPECT_EQ(ReadLines(path), TemplateLines(ObjectKind::Group, OperationKind::Mov));
    EXPECT_EQ(S(PathBox(dialog)->text()), path.string());
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

TEST_F(TemplateDialogTest, AnEmptyNameIsRefusedAndCancelClosesWithoutWriting) {
    frmCreateTemplate dialog(nullptr, ObjectKind::OU, OperationKind::Add);
    Create(dialog, "   ");
    ExpectBox("ﾃﾝﾌﾟﾚｰﾄﾌｧｲﾙ名が指定されていません。", MsgIcon::Critical);
    EXPECT_TRUE(dialog.isVisible());

    const auto path = scratch / "cancelled.csv";
    PathBox(dialog)->setText(Q(path.string()));
    Find<QPushButton>(&dialog, "btnCancel")->click();
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_EQ(op.boxes.size(), 1u);
}

TEST_F(TemplateDialogTest, AnExistingFileIsReplacedOnlyAfterYes) {
    const auto path = scratch / "existing.csv";
    std::ofstream(path, std::ios::binary) << "keep me\r\n";
    const std::string question = "同名のCSVﾌｧｲﾙはすでに存在します。\r上書きしますか？";

    frmCreateTemplate dialog(nullptr, ObjectKind::Computer, OperationKind::Mdf);
    op.QueueAnswers({MsgAnswer::No});
    Create(dialog, path.string());
    ExpectBox(question, MsgIcon::Question);
    EXPECT_EQ(op.boxes[0].buttons, MsgButtons::YesNo);
    EXPECT_EQ(ReadBytes(path), "keep me\r\n");
    EXPECT_TRUE(dialog.isVisible());

    op.QueueAnswers({MsgAnswer::Yes});
    Find<QPushButton>(&dialog, "btnCreate")->click();
    ASSERT_EQ(op.boxes.size(), 2u);
    EXPECT_EQ(op.boxes[1].text, question);
    EXPECT_EQ(ReadLines(path), TemplateLines(ObjectKind::Computer, OperationKind::Mdf));
    EXPECT_FALSE(dialog.isVisible());
}

TEST_F(TemplateDialogTest, AFailedWriteIsToldAndTheDialogCloses) {
    frmCreateTemplate dialog(nullptr, ObjectKind::SharedFolder, OperationKind::Del);
    Create(dialog, (scratch / "no-such-folder" / "t.csv").string());
    ExpectBox(
        "ﾌｧｲﾙへの書込みが失敗しました！\rﾌｧｲﾙが使用中かまたはﾌｧｲﾙやﾃﾞｨﾚｸﾄﾘの書込み権限が"
        "あるかを確認してください。",
        MsgIcon::Critical);
    EXPECT_FALSE(dialog.isVisible());
}

TEST_F(TemplateDialogTest, TheFileDialogOffersCsvFilesFirstAndFillsThePath) {
    const auto chosen = scratch / "chosen.csv";
    frmCreateTemplate dialog(nullptr, ObjectKind::OU, OperationKind::Add);
    dialog.show();

    QStringList filters;
    ModalPlayer player;
    player.onModal = [&](QWidget* modal) {
        auto* files = qobject_cast<QFileDialog*>(modal);
        if (!files) return false;
        filters = files->nameFilters();
        files->selectFile(Q(chosen.string()));
        static_cast<QDialog*>(files)->accept();  // QFileDialog's own is protected
        return true;
    };
    Find<QPushButton>(&dialog, "btnFileRefer")->click();

    EXPECT_EQ(filters, (QStringList{U("CSV ﾌｧｲﾙ (*.csv)"), U("すべてのﾌｧｲﾙ (*.*)")}));
    EXPECT_EQ(S(PathBox(dialog)->text()), chosen.string());
    EXPECT_FALSE(std::filesystem::exists(chosen));  // choosing a name writes nothing yet
}

}  // namespace
