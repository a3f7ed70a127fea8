// The setup dialog driven as a user drives it (offscreen): every kind of editor changes its
// property only on OK, Cancel restores what Apply wrote, Undo steps back, a value outside
// its limits is refused with the limits shown and nothing applied, collections grow and
// shrink, and what a user set survives the JSON form into an identical picture.
#include <qv/QVScope.h>
#include <qv/qt/QLJsonForm.h>
#include <qv/qt/QVScopeWidget.h>

#include "platform/qt/KeepPicture.h"
#include "qv/dialogs/QVSetupDialog.h"
#include "qv/display/QVExternalScopeElement.h"

#include <QApplication>
#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QFontDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>
#include <string>

using namespace qv;

namespace {

TQLValue Read(TQLPersistent& ARoot, const std::string& APath, const std::string& AProp)
{
    TQVSetupDialog Probe(ARoot);
    EXPECT_TRUE(Probe.SelectPath(APath)) << APath;
    TQLPersistent* Object = Probe.GetSelectedObject();
    const TQLPropertyInfo* Prop = Object->GetClassInfo().FindProperty(AProp);
    EXPECT_NE(Prop, nullptr) << AProp;
    return Prop->Get(*Object);
}

// Types AText into the line editor of AProp on the page APath, as a user would.
void Type(TQVSetupDialog& ADialog, const std::string& APath, const std::string& AProp, const QString& AText)
{
    ASSERT_TRUE(ADialog.SelectPath(APath)) << APath;
    auto* Edit = qobject_cast<QLineEdit*>(ADialog.FindEditor(AProp));
    ASSERT_NE(Edit, nullptr) << APath << "." << AProp;
    Edit->selectAll();
    QTest::keyClick(Edit, Qt::Key_Delete);
    QTest::keyClicks(Edit, AText);
}

QByteArray Json(const TQLPersistent& AObject)
{
    return QLSaveToJson(AObject, QJsonDocument::Compact);
}

} // namespace

TEST(SetupDialog, EachKindOfEditorChangesItsPropertyOnlyOnOk)
{
    struct TCase {
        const char* Path;
        const char* Prop;
        std::function<void(TQVSetupDialog&)> Edit;
        TQLValue Expected;
    };
    const TCase Cases[] = {
        {"Channels[0]", "Color", [](TQVSetupDialog& D) { Type(D, "Channels[0]", "Color", "#FF00C000"); },
         int64_t(0xFF00C000)},
        {"Channels[0]", "Width", [](TQVSetupDialog& D) { Type(D, "Channels[0]", "Width", "3"); }, int64_t(3)},
        {"YAxis.Max", "Value", [](TQVSetupDialog& D) { Type(D, "YAxis.Max", "Value", "42.5"); }, 42.5},
        {"Title", "Text", [](TQVSetupDialog& D) { Type(D, "Title", "Text", "Pressure"); }, std::string("Pressure")},
        {"YAxis.Max", "AutoScale",
         [](TQVSetupDialog& D) {
             D.SelectPath("YAxis.Max");
             qobject_cast<QCheckBox*>(D.FindEditor("AutoScale"))->click();
         },
         false},
        {"Channels[0]", "StrokeDash",
         [](TQVSetupDialog& D) {
             D.SelectPath("Channels[0]");
             auto* Combo = qobject_cast<QComboBox*>(D.FindEditor("StrokeDash"));
             Combo->setCurrentIndex(Combo->findText("sdDot"));
         },
         int64_t(sdDot)},
        {"Title.Font", "Style",
         [](TQVSetupDialog& D) {
             D.SelectPath("Title.Font");
             D.FindEditor("Style")->findChild<QCheckBox*>("fsItalic")->click();
         },
         int64_t(fsBold | fsItalic)}, // a title is bold by default
    };
    for (const TCase& C : Cases) {
        TQVScope Scope;
        const TQLValue Before = Read(Scope, C.Path, C.Prop);
        TQVSetupDialog Dialog(Scope);
        C.Edit(Dialog);
        EXPECT_TRUE(Dialog.HasPendingEdits()) << C.Prop;
        EXPECT_EQ(Read(Scope, C.Path, C.Prop), Before) << C.Prop << " changed before OK";
        QTest::mouseClick(Dialog.GetOkButton(), Qt::LeftButton);
        EXPECT_EQ(Dialog.result(), QDialog::Accepted) << C.Prop << ": " << Dialog.GetError().toStdString();
        EXPECT_EQ(Read(Scope, C.Path, C.Prop), C.Expected) << C.Prop;
    }
}

// The colour and font buttons open Qt's own dialogs; what the user picks there waits like
// any other edit and lands on OK.
TEST(SetupDialog, ColourAndFontDialogsFeedTheirProperties)
{
    TQVScope Scope;
    TQVSetupDialog Dialog(Scope);

    ASSERT_TRUE(Dialog.SelectPath("Channels[0]"));
    QTimer::singleShot(0, [] {
        auto* Picker = qobject_cast<QColorDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(Picker, nullptr);
        Picker->setCurrentColor(QColor::fromRgba(0x8020A040));
        Picker->accept();
    });
    Dialog.FindPageButton("Color...:Color")->click();
    EXPECT_EQ(qobject_cast<QLineEdit*>(Dialog.FindEditor("Color"))->text(), "#8020A040");

    ASSERT_TRUE(Dialog.SelectPath("XAxis.Font"));
    QTimer::singleShot(0, [] {
        auto* Picker = qobject_cast<QFontDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(Picker, nullptr);
        QFont Font = Picker->currentFont();
        Font.setPointSize(14);
        Font.setItalic(true);
        Picker->setCurrentFont(Font);
        Picker->accept();
    });
    Dialog.FindPageButton("Font...")->click();
    EXPECT_EQ(Scope.GetXAxis()->GetFont()->GetSize(), 8); // waiting until OK

    Dialog.accept();
    ASSERT_EQ(Dialog.result(), QDialog::Accepted) << Dialog.GetError().toStdString();
    EXPECT_EQ(Scope.GetChannels()->GetItem(0)->GetColor(), 0x8020A040u);
    EXPECT_EQ(Scope.GetXAxis()->GetFont()->GetSize(), 14);
    EXPECT_TRUE(Scope.GetXAxis()->GetFont()->GetStyle() & fsItalic);
}

TEST(SetupDialog, CancelRestoresWhatApplyWroteAndUndoStepsBack)
{
    TQVScope Scope;
    const QByteArray Original = Json(Scope);
    TQVSetupDialog Dialog(Scope);
    Type(Dialog, "Channels[0]", "Color", "#FF0000FF");
    QTest::mouseClick(Dialog.GetApplyButton(), Qt::LeftButton);
    EXPECT_EQ(Scope.GetChannels()->GetItem(0)->GetColor(), 0xFF0000FFu);
    const QByteArray AfterFirst = Json(Scope);
    Type(Dialog, "Title", "Text", "Second");
    ASSERT_TRUE(Dialog.Apply());
    EXPECT_EQ(Scope.GetTitle()->GetText(), "Second");

    QTest::mouseClick(Dialog.GetUndoButton(), Qt::LeftButton);
    EXPECT_EQ(Json(Scope), AfterFirst);
    // An edit waiting at Cancel is dropped as well.
    Type(Dialog, "Title", "Text", "Waiting");
    QTest::mouseClick(Dialog.GetCancelButton(), Qt::LeftButton);
    EXPECT_EQ(Dialog.result(), QDialog::Rejected);
    EXPECT_EQ(Json(Scope), Original);
}

TEST(SetupDialog, AValueOutsideItsLimitsIsRefusedWithTheLimitsAndNothingApplied)
{
    struct TCase {
        const char* Path;
        const char* Prop;
        const char* Text;
        const char* Shown; // part of the message
    };
    const TCase Cases[] = {
        {"Title.Font", "Size", "5000", "1..1000"},
        {"Channels[0].Points", "Size", "abc", "not a whole number"},
        {"", "RefreshInterval", "0", "1..4294967295"},
        {"Channels[0]", "Width", "99999999999", "-2147483648..2147483647"},
        {"Channels[0]", "Width", "99999999999999999999", "-2147483648..2147483647"},
        {"Channels[0]", "Width", "1e3", "not a whole number"},
        {"Channels[0]", "Color", "#12", "#AARRGGBB"},
        {"YAxis.Max", "Value", "twelve", "not a number"},
    };
    for (const TCase& C : Cases) {
        TQVScope Scope;
        const QByteArray Original = Json(Scope);
        TQVSetupDialog Dialog(Scope);
        // A good edit waits beside the bad one: it is not applied either.
        Type(Dialog, "Title", "Text", "Never");
        Type(Dialog, C.Path, C.Prop, C.Text);
        QTest::mouseClick(Dialog.GetOkButton(), Qt::LeftButton);
        EXPECT_NE(Dialog.result(), QDialog::Accepted) << C.Text;
        EXPECT_NE(Dialog.GetError().indexOf(C.Shown), -1) << Dialog.GetError().toStdString();
        EXPECT_NE(Dialog.GetError().indexOf(C.Prop), -1) << Dialog.GetError().toStdString();
        EXPECT_EQ(Json(Scope), Original) << C.Text;
    }
}

TEST(SetupDialog, CollectionsGrowAndShrinkAndCancelPutsThemBack)
{
    TQVScope Scope;
    TQVScopeChannel* First = Scope.GetChannels()->GetItem(0);
    TQVSetupDialog Dialog(Scope);
    ASSERT_TRUE(Dialog.SelectPath("Channels"));
    QTest::mouseClick(Dialog.FindPageButton("Add"), Qt::LeftButton);
    EXPECT_EQ(Scope.GetChannels()->GetCount(), 2);
    EXPECT_EQ(Dialog.GetSelectedPath(), "Channels[1]");
    ASSERT_TRUE(Dialog.SelectPath("Channels[0]"));
    QTest::mouseClick(Dialog.FindPageButton("Delete"), Qt::LeftButton);
    EXPECT_EQ(Scope.GetChannels()->GetCount(), 1);
    EXPECT_FALSE(Dialog.SelectPath("Channels[1]"));
    Dialog.reject();
    ASSERT_EQ(Scope.GetChannels()->GetCount(), 1);
    // Back as it was: the remaining channel holds the first one's settings again.
    EXPECT_EQ(Json(Scope), Json(TQVScope()));
    (void)First;
}

TEST(SetupDialog, ElementSettingsAreEditedLikeAnyOther)
{
    TQVExternalScopeMatrixLayer Element;
    TQVSetupDialog Dialog(Element);
    Type(Dialog, "Size", "X", "-0.5");
    EXPECT_FALSE(Dialog.Apply());
    EXPECT_NE(Dialog.GetError().indexOf("0..inf"), -1) << Dialog.GetError().toStdString();
    Type(Dialog, "Size", "X", "0.25");
    ASSERT_TRUE(Dialog.Apply()) << Dialog.GetError().toStdString();
    EXPECT_EQ(Element.GetSize()->GetX(), 0.25);
}

// A host's dialog edits the displays it hosts too: applied, refused and cancelled together.
TEST(SetupDialog, HostedDisplaysAreEditedWithTheirHost)
{
    TQVScope Host;
    auto* Element = Host.GetElements()->Add<TQVExternalScopeElement>();
    const QByteArray HostBefore = Json(Host), ElementBefore = Json(*Element);
    TQVSetupDialog Dialog(Host);
    ASSERT_TRUE(Dialog.SelectObject(Element->GetTitle()));
    EXPECT_EQ(Dialog.GetSelectedPath(), "Elements[0].Title");

    Type(Dialog, "Title", "Text", "Host");
    Type(Dialog, "Elements[0].Size", "Y", "-1");
    EXPECT_FALSE(Dialog.Apply());
    EXPECT_EQ(Json(Host), HostBefore);

    Type(Dialog, "Elements[0].Size", "Y", "0.5");
    Type(Dialog, "Elements[0].Title", "Text", "Hosted");
    ASSERT_TRUE(Dialog.Apply()) << Dialog.GetError().toStdString();
    EXPECT_EQ(Host.GetTitle()->GetText(), "Host");
    EXPECT_EQ(Element->GetTitle()->GetText(), "Hosted");
    EXPECT_EQ(Element->GetSize()->GetY(), 0.5);

    Dialog.reject();
    EXPECT_EQ(Json(Host), HostBefore);
    EXPECT_EQ(Json(*Element), ElementBefore);
}

// What a user sets in the dialog, saved as JSON and loaded into a fresh scope, paints the
// same picture.
TEST(SetupDialog, ASettingsRoundTripGivesAnIdenticalPicture)
{
    auto Paint = [](TQVScope& AScope) {
        AScope.SetCanvasFactory(QLQtCanvasFactory());
        AScope.SetBounds(0, 0, 320, 200);
        const double Samples[] = {0, 3, -2, 5, 1, -4, 2};
        AScope.GetChannels()->GetItem(0)->GetData()->AddYData(Samples, 7);
        AScope.RefreshView();
        TQLBitmap Bitmap(320, 200);
        AScope.CopyToBitmap(Bitmap);
        return Bitmap;
    };
    TQVScope Edited;
    {
        TQVSetupDialog Dialog(Edited);
        Type(Dialog, "Channels[0]", "Color", "#FFFF8000");
        Type(Dialog, "Channels[0]", "Width", "2");
        Dialog.SelectPath("YAxis.AutoScaling");
        qobject_cast<QCheckBox*>(Dialog.FindEditor("Enabled"))->click();
        Dialog.SelectPath("YAxis.Max");
        qobject_cast<QCheckBox*>(Dialog.FindEditor("AutoScale"))->click();
        Type(Dialog, "YAxis.Max", "Value", "10");
        Dialog.SelectPath("YAxis.Min");
        qobject_cast<QCheckBox*>(Dialog.FindEditor("AutoScale"))->click();
        Type(Dialog, "YAxis.Min", "Value", "-10");
        Type(Dialog, "Title", "Text", "Round trip");
        Dialog.accept();
        ASSERT_EQ(Dialog.result(), QDialog::Accepted) << Dialog.GetError().toStdString();
    }
    TQVScope Fresh;
    QLLoadFromJson(Fresh, QLSaveToJson(Edited));
    const TQLBitmap A = Paint(Edited), B = Paint(Fresh);
    qvtest::KeepPicture(A, "SetupRoundTrip.png");
    ASSERT_EQ(A.GetWidth(), B.GetWidth());
    EXPECT_TRUE(std::equal(A.GetBits(), A.GetBits() + size_t(A.GetWidth()) * size_t(A.GetHeight()), B.GetBits()));
    // And the edits show: the picture differs from a default scope's.
    TQVScope Default;
    const TQLBitmap C = Paint(Default);
    EXPECT_FALSE(std::equal(A.GetBits(), A.GetBits() + size_t(A.GetWidth()) * size_t(A.GetHeight()), C.GetBits()));
}

// The widget is the one entry: a press on an axis title (DoAxisClick) and ShowSetupDialog
// open the modal dialog at the page of the item concerned.
TEST(SetupDialog, TheWidgetOpensTheDialogOnThePageAsked)
{
    // A real press of the left button on an axis' title.
    auto PressTitle = [](TQVScopeWidget& W, TQVDisplayAxis* AAxis) {
        W.grab(); // one paint: the layout and the surface that measures the title
        TQVScope& S = W.GetScope();
        const TRect Box =
            AAxis->GetLabelBox(*S.GetCanvas(), *AAxis->GetAxisLabel()->GetFont(), AAxis->GetIsVertical()).Box;
        QTest::mouseClick(&W, Qt::LeftButton, {}, QPoint((Box.Left + Box.Right) / 2, (Box.Top + Box.Bottom) / 2));
    };
    struct TCase {
        std::function<void(TQVScopeWidget&)> Open;
        std::string Page;
    };
    const TCase Cases[] = {
        {[](TQVScopeWidget& W) { W.GetScope().ShowSetupDialog(); }, ""},
        {[](TQVScopeWidget& W) { W.GetScope().DoAxisClick(W.GetScope().GetAxisIndex(W.GetScope().GetXAxis())); },
         "XAxis"},
        {[](TQVScopeWidget& W) { W.GetScope().DoAxisClick(W.GetScope().GetAxisIndex(W.GetScope().GetYAxis())); },
         "YAxis"},
        {[&](TQVScopeWidget& W) { PressTitle(W, W.GetScope().GetYAxis()); }, "YAxis"},
        {[&](TQVScopeWidget& W) { PressTitle(W, W.GetScope().GetXAxis()); }, "XAxis"},
        {[](TQVScopeWidget& W) { W.GetScope().ShowSetupDialogFor(W.GetScope().GetChannels()->GetItem(0)); },
         "Channels[0]"},
        {[](TQVScopeWidget& W) { W.GetScope().ShowSetupDialogFor(W.GetScope().GetTitle()->GetFont()); }, "Title.Font"},
    };
    for (const TCase& C : Cases) {
        TQVScopeWidget Widget;
        Widget.resize(500, 300);
        Widget.show();
        std::string Seen = "(no dialog)";
        QTimer::singleShot(0, [&Seen] {
            if (auto* Dialog = qobject_cast<TQVSetupDialog*>(QApplication::activeModalWidget())) {
                Seen = Dialog->GetSelectedPath();
                Dialog->reject();
            }
        });
        C.Open(Widget);
        EXPECT_EQ(Seen, C.Page);
    }
}
