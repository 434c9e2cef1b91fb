// frmCreateTemplate as the operator uses it: the title of the kind, the option of the current
// page, the boxes of an empty name, an existing file and a failed write, and the file dialog.

#include <gtest/gtest.h>

#include <QApplication>
#include <QFileDialog>
#include <QGroupBox>
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

const std::string kBoxTitle = "ﾃﾝﾌﾟﾚｰﾄﾌｧｲﾙの作成";

class TemplateDialogTest : public ::testing::Test {
  protected:
    template <typename T>
    T* Find(QWidget& dialog, const QString& name) {
        T* widget = dialog.findChild<T*>(name);
        EXPECT_NE(widget, nullptr) << name.toStdString();
        return widget;
    }
    QRadioButton* Option(QWidget& dialog, int i) {
        return Find<QRadioButton>(dialog, QStringLiteral("optImportType(%1)").arg(i));
    }
    // Types `path` and presses btnCreate on a shown dialog.
    void Create(frmCreateTemplate& dialog, const std::string& path) {
        dialog.show();
        Find<QLineEdit>(dialog, "txtTmpFilePath")->setText(Q(path));
        Find<QPushButton>(dialog, "btnCreate")->click();
    }
    std::vector<std::string> FileLines(const std::filesystem::path& p) {
        return SplitCrLf(platform::Cp932ToUtf8(ReadFileBytes(p)));
    }

    ScriptedOperator op;
    TemplateScratch scratch;
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

    for (const char* name : {"Frame1", "Frame2"}) Find<QGroupBox>(fromExport, name);
    for (const char* name : {"btnFileRefer", "btnCreate", "btnCancel"})
        Find<QPushButton>(fromExport, name);
}

TEST_F(TemplateDialogTest, TheChosenOptionSelectsTheTemplateOfTheKind) {
    const auto path = scratch / "group_mov.csv";
    frmCreateTemplate dialog(nullptr, ObjectKind::Group, OperationKind::Add);
    Option(dialog, 2)->click();
    Create(dialog, "  " + path.string() + "  ");  // half-width blanks around the name go

    EXPECT_TRUE(op.boxes.empty());
    EXPECT_EQ(FileLines(path), TemplateLines(ObjectKind::Group, OperationKind::Mov));
    EXPECT_EQ(S(Find<QLineEdit>(dialog, "txtTmpFilePath")->text()), path.string());
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

TEST_F(TemplateDialogTest, AnEmptyNameIsRefusedAndTheDialogStays) {
    frmCreateTemplate dialog(nullptr, ObjectKind::OU, OperationKind::Add);
    Create(dialog, "   ");
    ASSERT_EQ(op.boxes.size(), 1u);
    EXPECT_EQ(op.boxes[0].title, kBoxTitle);
    EXPECT_EQ(op.boxes[0].text, "ﾃﾝﾌﾟﾚｰﾄﾌｧｲﾙ名が指定されていません。");
    EXPECT_EQ(op.boxes[0].icon, MsgIcon::Critical);
    EXPECT_TRUE(dialog.isVisible());
}

TEST_F(TemplateDialogTest, AnExistingFileIsReplacedOnlyAfterYes) {
    const auto path = scratch / "existing.csv";
    std::ofstream(path, std::ios::binary) << "keep me\r\n";
    const std::string question = "同名のCSVﾌｧｲﾙはすでに存在します。\r上書きしますか？";

    frmCreateTemplate dialog(nullptr, ObjectKind::Computer, OperationKind::Mdf);
    op.QueueAnswers({MsgAnswer::No});
    Create(dialog, path.string());
    ASSERT_EQ(op.boxes.size(), 1u);
    EXPECT_EQ(op.boxes[0].title, kBoxTitle);
    EXPECT_EQ(op.boxes[0].text, question);
    EXPECT_EQ(op.boxes[0].icon, MsgIcon::Question);
    EXPECT_EQ(op.boxes[0].buttons, MsgButtons::YesNo);
    EXPECT_EQ(ReadFileBytes(path), "keep me\r\n");
    EXPECT_TRUE(dialog.isVisible());

    op.QueueAnswers({MsgAnswer::Yes});
    Find<QPushButton>(dialog, "btnCreate")->click();
    ASSERT_EQ(op.boxes.size(), 2u);
    EXPECT_EQ(op.boxes[1].text, question);
    EXPECT_EQ(FileLines(path), TemplateLines(ObjectKind::Computer, OperationKind::Mdf));
    EXPECT_FALSE(dialog.isVisible());
}

TEST_F(TemplateDialogTest, AFailedWriteIsToldAndTheDialogCloses) {
    frmCreateTemplate dialog(nullptr, ObjectKind::SharedFolder, OperationKind::Del);
    Create(dialog, (scratch / "no-such-folder" / "t.csv").string());
    ASSERT_EQ(op.boxes.size(), 1u);
    EXPECT_EQ(op.boxes[0].title, kBoxTitle);
    EXPECT_EQ(op.boxes[0].text,
              "ﾌｧｲﾙへの書込みが失敗しました！\rﾌｧｲﾙが使用中かまたはﾌｧｲﾙやﾃﾞｨﾚｸﾄﾘの書込み権限が"
              "あるかを確認してください。");
    EXPECT_EQ(op.boxes[0].icon, MsgIcon::Critical);
    EXPECT_FALSE(dialog.isVisible());
}

TEST_F(TemplateDialogTest, CancelClosesWithoutWriting) {
    const auto path = scratch / "cancelled.csv";
    frmCreateTemplate dialog(nullptr, ObjectKind::OU, OperationKind::Add);
    dialog.show();
    Find<QLineEdit>(dialog, "txtTmpFilePath")->setText(Q(path.string()));
    Find<QPushButton>(dialog, "btnCancel")->click();
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_TRUE(op.boxes.empty());
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
    Find<QPushButton>(dialog, "btnFileRefer")->click();

    EXPECT_EQ(filters, frmCreateTemplate::FileFilters());
    ASSERT_EQ(filters.size(), 2);
    EXPECT_EQ(S(filters[0]), "CSV ﾌｧｲﾙ (*.csv)");
    EXPECT_EQ(S(filters[1]), "すべてのﾌｧｲﾙ (*.*)");
    EXPECT_EQ(S(Find<QLineEdit>(dialog, "txtTmpFilePath")->text()), chosen.string());
    EXPECT_FALSE(std::filesystem::exists(chosen));  // choosing a name writes nothing yet
}

}  // namespace
