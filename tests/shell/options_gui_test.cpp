// frmOptions and the in-memory options: the working copies, the family of the visible tab,
// Cancel after "更新", and the settings a new process starts with.

#include <QComboBox>
#include <QListWidget>
#include <QTabWidget>

#include "GuiTestSupport.h"
#include "base/Options.h"
#include "base/Trace.h"
#include "shell/frmOptions.h"

namespace orin::test {
namespace {

using shell::frmOptions;

TEST(OptionsTables, EveryResourceHasOneListItemPerSetting) {
    for (int r = 0; r < kCompareResourceCount; ++r) {
        const auto resource = static_cast<OptionResource>(r);
        EXPECT_EQ(CompareItemNames(resource).size(), DontCompareOf(resource).size()) << r;
    }
}

class OptionsTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ResetOptions();
        Open();
    }
    void TearDown() override {
        ResetOptions();
        TraceMode = 0;
    }
    void Open() {
        dialog = std::make_unique<frmOptions>(nullptr);
        dialog->show();
    }
    QListWidget* List() { return Find<QListWidget>(dialog.get(), "lstNotTarget"); }
    QComboBox* Combo(const char* name) { return Find<QComboBox>(dialog.get(), name); }
    void Tab(int index) { Find<QTabWidget>(dialog.get(), "tbsOptions")->setCurrentIndex(index); }
    void Press(const char* name) {
        QTest::mouseClick(Find<QPushButton>(dialog.get(), name), Qt::LeftButton);
    }
    // A choice made in a combo box's list, as the operator makes it.
    static void Choose(QComboBox* combo, int index) {
        combo->setCurrentIndex(index);
        emit combo->activated(index);
    }
    void Check(int row, bool checked) {
        List()->item(row)->setCheckState(checked ? Qt::Checked : Qt::Unchecked);
    }

    ScratchHome home;
    std::unique_ptr<frmOptions> dialog;
};

TEST_F(OptionsTest, ANewProcessExcludesNothingAndFailsOnDuplicates) {
    for (int r = 0; r < kRepeatResourceCount; ++r)
        EXPECT_EQ(RepeatOf(static_cast<OptionResource>(r)), (RepeatChoice{true, false, false}));
    for (int r = 0; r < kCompareResourceCount; ++r)
        for (const CompareExclusion& e : DontCompareOf(static_cast<OptionResource>(r)))
            EXPECT_FALSE(e.blnChecked);
    // The dialog opens on the OU items and the first choice.
    EXPECT_EQ(List()->count(), 7);
    EXPECT_EQ(List()->item(0)->text(), U("国/地域"));
    EXPECT_EQ(Combo("cboSelectOption")->currentIndex(), 0);
    EXPECT_EQ(Combo("cboSelObj_AllImport")->count(), 5);
    EXPECT_EQ(Combo("cboSelObj_Compare")->count(), 6);
}

TEST_F(OptionsTest, OnlyTheVisibleTabsFamilyIsApplied) {
    Check(2, true);  // OU: "都道府県"
    Tab(1);
    Choose(Combo("cboSelectOption"), kRepeatOverwrite);
    Press("cmdOK");
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(blnRepeat_OU, (RepeatChoice{false, false, true}));
    EXPECT_FALSE(DontCompare_OU[2].blnChecked);  // dropped with the dialog

    Open();
    Tab(1);
    Choose(Combo("cboSelectOption"), kRepeatDeleteFirst);
    Tab(0);
    Check(6, true);
    Press("cmdApply");
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_TRUE(DontCompare_OU[6].blnChecked);
    EXPECT_EQ(blnRepeat_OU, (RepeatChoice{false, false, true}));
}

TEST_F(OptionsTest, CancelAfterApplyKeepsWhatWasApplied) {
    Check(1, true);
    Press("cmdApply");
    Check(1, false);
    Check(3, true);
    Press("cmdCancel");
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_TRUE(DontCompare_OU[1].blnChecked);
    EXPECT_FALSE(DontCompare_OU[3].blnChecked);

    // Reopened, the dialog shows the settings, not the values dropped at the close.
    Open();
    EXPECT_EQ(List()->item(1)->checkState(), Qt::Checked);
    EXPECT_EQ(List()->item(3)->checkState(), Qt::Unchecked);
}

TEST_F(OptionsTest, EachResourceKeepsItsOwnChecks) {
    Choose(Combo("cboSelObj_Compare"), static_cast<int>(OptionResource::Group));
    ASSERT_EQ(List()->count(), 9);
    EXPECT_EQ(List()->item(7)->text(), U("所属するﾒﾝﾊﾞｰ"));
    Check(7, true);
    Choose(Combo("cboSelObj_Compare"), static_cast<int>(OptionResource::User));
    ASSERT_EQ(List()->count(), 35);
    Press("btnSelectAll");
    Press("btnClearAll");
    Check(34, true);
    Choose(Combo("cboSelObj_Compare"), static_cast<int>(OptionResource::Group));
    EXPECT_EQ(List()->item(7)->checkState(), Qt::Checked);
    EXPECT_EQ(List()->item(6)->checkState(), Qt::Unchecked);
    Press("cmdOK");

    EXPECT_TRUE(DontCompare_Grp[7].blnChecked);
    EXPECT_EQ(std::count_if(DontCompare_Usr.begin(), DontCompare_Usr.end(),
                            [](const CompareExclusion& e) { return e.blnChecked; }),
              1);
    EXPECT_TRUE(DontCompare_Usr[34].blnChecked);
    EXPECT_EQ(DontCompare_Usr[34].intListIndex, 34);
    EXPECT_FALSE(DontCompare_OU[0].blnChecked);
}

TEST_F(OptionsTest, OneChoiceForAllResources) {
    Tab(1);
    Choose(Combo("cboSelObj_AllImport"), static_cast<int>(OptionResource::User));
    Choose(Combo("cboSelectOption"), kRepeatDeleteFirst);
    Choose(Combo("cboSelObj_AllImport"), static_cast<int>(OptionResource::OU));
    EXPECT_EQ(Combo("cboSelectOption")->currentIndex(), kRepeatFail);
    Choose(Combo("cboSelObj_AllImport"), static_cast<int>(OptionResource::User));
    EXPECT_EQ(Combo("cboSelectOption")->currentIndex(), kRepeatDeleteFirst);

    Choose(Combo("cboSelObj_AllImport"), static_cast<int>(OptionResource::SharedFolder));
    Choose(Combo("cboSelectOption"), kRepeatOverwrite);
    Press("cmdSetAllRrc");
    Press("cmdOK");
    for (int r = 0; r < kRepeatResourceCount; ++r)
        EXPECT_EQ(RepeatOf(static_cast<OptionResource>(r)), (RepeatChoice{false, false, true}))
            << r;
}

TEST_F(OptionsTest, EveryPressIsTraced) {
    TraceMode = 1;
    TraceFilePath = home / "Debug_test.log";
    Press("cmdApply");
    Press("cmdCancel");
    const std::string all = FileText(TraceFilePath);
    EXPECT_NE(all.find("【Sub: cmdApply_Click】★★★「ｵﾌﾟｼｮﾝ設定」画面の「更新」ﾎﾞﾀﾝが押された★★★"),
              std::string::npos)
        << all;
    EXPECT_NE(all.find("【Sub: UpdateOptions】Enter"), std::string::npos) << all;
    EXPECT_NE(all.find("「ｷｬﾝｾﾙ」ﾎﾞﾀﾝが押された★★★"), std::string::npos) << all;
}

}  // namespace
}  // namespace orin::test
