#include "qv/dialogs/QVSetupDialog.h"

#include "qv/display/QVDataDisplay.h"
#include "qv/foundation/QLCollection.h"
#include "qv/foundation/QLPersistent.h"
#include "qv/foundation/QVDisplayFont.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFontDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QScrollArea>
#include <QSplitter>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QVBoxLayout>

#include <cmath>
#include <limits>
#include <stdexcept>

namespace qv {

namespace {

QString NumberText(double AValue)
{
    if (std::isinf(AValue))
        return AValue > 0 ? QStringLiteral("inf") : QStringLiteral("-inf");
    return QLocale::c().toString(AValue, 'g', 17);
}

// The limits an integer property keeps: its type's range narrowed by the class's limits.
void IntegerLimits(const TQLPropertyInfo& AProp, int64_t& ALow, int64_t& AHigh)
{
    ALow = AProp.MinValue;
    AHigh = AProp.MaxValue;
    if (AProp.LowLimit > static_cast<double>(ALow))
        ALow = static_cast<int64_t>(std::ceil(AProp.LowLimit));
    if (AProp.HighLimit < static_cast<double>(AHigh))
        AHigh = static_cast<int64_t>(std::floor(AProp.HighLimit));
}

[[noreturn]] void Refuse(const TQLPropertyInfo& AProp, const QString& AText, const QString& AWhy)
{
    throw std::invalid_argument((QString::fromStdString(AProp.Name) + ": \"" + AText + "\" " + AWhy).toStdString());
}

bool IsShown(const TQLPropertyInfo& AProp)
{
    // Defined properties and the underscore placeholders are for the stored form only.
    return !AProp.Defined && !AProp.Name.empty() && AProp.Name.front() != '_' && AProp.Name.back() != '_';
}

std::string ItemPath(const std::string& ACollectionPath, int32_t AIndex)
{
    return ACollectionPath + "[" + std::to_string(AIndex) + "]";
}

std::string Child(const std::string& APath, const std::string& AName)
{
    return APath.empty() ? AName : APath + "." + AName;
}

} // namespace

TQLValue QVParsePropertyText(const TQLPropertyInfo& AProp, const QString& AText)
{
    const QString Text = AText.trimmed();
    switch (AProp.Kind) {
    case pkBool:
        if (Text == QLatin1String("true"))
            return true;
        if (Text == QLatin1String("false"))
            return false;
        Refuse(AProp, AText, QStringLiteral("is neither true nor false"));
    case pkInteger:
    case pkUnsigned: {
        bool Ok = false;
        const qlonglong Value = Text.toLongLong(&Ok);
        int64_t Low, High;
        IntegerLimits(AProp, Low, High);
        if (!Ok) {
            // A whole number beyond 64 bits is still out of range rather than not a number.
            bool Big = false;
            const double D = Text.toDouble(&Big);
            if (!Big || std::trunc(D) != D || std::fabs(D) < 9.2e18)
                Refuse(AProp, AText, QStringLiteral("is not a whole number"));
            Refuse(AProp, AText,
                   QStringLiteral("is out of range %1..%2").arg(QString::number(Low), QString::number(High)));
        }
        if (Value < Low || Value > High)
            Refuse(AProp, AText,
                   QStringLiteral("is out of range %1..%2").arg(QString::number(Low), QString::number(High)));
        return static_cast<int64_t>(Value);
    }
    case pkReal: {
        bool Ok = false;
        const double Value = QLocale::c().toDouble(Text, &Ok);
        if (!Ok || std::isnan(Value))
            Refuse(AProp, AText, QStringLiteral("is not a number"));
        if (Value < AProp.LowLimit || Value > AProp.HighLimit)
            Refuse(
                AProp, AText,
                QStringLiteral("is out of range %1..%2").arg(NumberText(AProp.LowLimit), NumberText(AProp.HighLimit)));
        return Value;
    }
    case pkString: return AText.toStdString();
    case pkColor: {
        bool Ok = Text.startsWith('#') && (Text.size() == 9 || Text.size() == 7);
        uint32_t Value = Ok ? Text.mid(1).toUInt(&Ok, 16) : 0;
        if (!Ok)
            Refuse(AProp, AText, QStringLiteral("is not a colour as #AARRGGBB or #RRGGBB"));
        if (Text.size() == 7)
            Value |= 0xFF000000u;
        return static_cast<int64_t>(Value);
    }
    case pkEnum:
        if (auto Value = AProp.Enum->ValueOf(Text.toStdString()))
            return *Value;
        Refuse(AProp, AText, QStringLiteral("is not a value of %1").arg(QString::fromStdString(AProp.Enum->TypeName)));
    case pkSet: {
        int64_t Value = 0;
        for (const QString& Name : Text.split(',', Qt::SkipEmptyParts)) {
            auto Bit = AProp.Enum->ValueOf(Name.trimmed().toStdString());
            if (!Bit)
                Refuse(AProp, AText,
                       QStringLiteral("names no member of %1").arg(QString::fromStdString(AProp.Enum->TypeName)));
            Value |= *Bit;
        }
        return Value;
    }
    case pkObject:
    case pkCollection: break;
    }
    Refuse(AProp, AText, QStringLiteral("is not a value property"));
}

QString QVPropertyText(const TQLPropertyInfo& AProp, const TQLValue& AValue)
{
    switch (AProp.Kind) {
    case pkBool: return std::get<bool>(AValue) ? QStringLiteral("true") : QStringLiteral("false");
    case pkInteger:
    case pkUnsigned: return QString::number(static_cast<qlonglong>(std::get<int64_t>(AValue)));
    case pkReal: return NumberText(std::get<double>(AValue));
    case pkString: return QString::fromStdString(std::get<std::string>(AValue));
    case pkColor:
        return QStringLiteral("#%1").arg(static_cast<uint32_t>(std::get<int64_t>(AValue)), 8, 16, QChar('0')).toUpper();
    case pkEnum: {
        const int64_t Value = std::get<int64_t>(AValue);
        if (const std::string* Name = AProp.Enum->NameOf(Value))
            return QString::fromStdString(*Name);
        return QString::number(static_cast<qlonglong>(Value));
    }
    case pkSet: {
        QStringList Names;
        const int64_t Value = std::get<int64_t>(AValue);
        for (const auto& [Bit, Name] : AProp.Enum->Values)
            if (Bit != 0 && (Value & Bit) == Bit)
                Names << QString::fromStdString(Name);
        return Names.join(QStringLiteral(", "));
    }
    case pkObject:
    case pkCollection: break;
    }
    return {};
}

// ---- The dialog ----

TQVSetupDialog::TQVSetupDialog(TQLPersistent& ARoot, QWidget* AParent) : QDialog(AParent), FRoot(ARoot)
{
    FRoots.push_back(&ARoot);
    if (const auto* Display = dynamic_cast<const TQVDataDisplay*>(&ARoot))
        for (const auto& Element : *Display->GetElements())
            if (auto* Settings = dynamic_cast<TQLPersistent*>(Element.get()))
                FRoots.push_back(Settings);
    FOpenState = SaveState();
    setWindowTitle(tr("Setup"));
    setModal(true);
    resize(640, 480);

    FTree = new QTreeWidget;
    FTree->setHeaderHidden(true);
    FTree->setMinimumWidth(180);
    FPageHost = new QWidget;
    FPageLayout = new QVBoxLayout(FPageHost);
    auto* Scroll = new QScrollArea;
    Scroll->setWidgetResizable(true);
    Scroll->setWidget(FPageHost);
    FErrorLabel = new QLabel;
    FErrorLabel->setObjectName(QStringLiteral("SetupError"));
    FErrorLabel->setStyleSheet(QStringLiteral("color: #c00000"));
    FErrorLabel->setWordWrap(true);
    auto* Right = new QWidget;
    auto* RightLayout = new QVBoxLayout(Right);
    RightLayout->setContentsMargins(0, 0, 0, 0);
    RightLayout->addWidget(Scroll, 1);
    RightLayout->addWidget(FErrorLabel);

    auto* Split = new QSplitter;
    Split->addWidget(FTree);
    Split->addWidget(Right);
    Split->setStretchFactor(1, 1);

    auto* Buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Apply);
    FOk = Buttons->button(QDialogButtonBox::Ok);
    FCancel = Buttons->button(QDialogButtonBox::Cancel);
    FApply = Buttons->button(QDialogButtonBox::Apply);
    FUndoButton = Buttons->addButton(tr("Undo"), QDialogButtonBox::ResetRole);
    connect(FOk, &QPushButton::clicked, this, &TQVSetupDialog::accept);
    connect(FCancel, &QPushButton::clicked, this, &TQVSetupDialog::reject);
    connect(FApply, &QPushButton::clicked, this, [this] { Apply(); });
    connect(FUndoButton, &QPushButton::clicked, this, [this] { Undo(); });

    auto* Layout = new QVBoxLayout(this);
    Layout->addWidget(Split, 1);
    Layout->addWidget(Buttons);

    connect(FTree, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* ACurrent) {
        if (ACurrent)
            ShowPage(ACurrent->data(0, Qt::UserRole).toInt());
    });
    BuildTree();
    SelectPath({});
    UpdateButtons();
}

TQVSetupDialog::~TQVSetupDialog() = default;

void TQVSetupDialog::BuildTree()
{
    const QSignalBlocker Block(FTree);
    FTree->clear();
    FNodes.clear();
    FPage = -1;
    AddObjectNode(nullptr, &FRoot, QString::fromStdString(FRoot.GetClassInfo().GetName()), {}, nullptr, -1);
    if (FRoots.size() > 1) {
        auto* List = new QTreeWidgetItem(FTree->topLevelItem(0), QStringList(QStringLiteral("Elements")));
        List->setData(0, Qt::UserRole, static_cast<int>(FNodes.size()));
        FNodes.push_back(TNode{nullptr, nullptr, -1, "Elements"});
        for (size_t I = 1; I < FRoots.size(); ++I) {
            const int32_t Index = static_cast<int32_t>(I - 1);
            const QString Label =
                QStringLiteral("[%1] %2").arg(Index).arg(QString::fromStdString(FRoots[I]->GetClassInfo().GetName()));
            AddObjectNode(List, FRoots[I], Label, ItemPath("Elements", Index), nullptr, -1);
        }
    }
    FTree->expandToDepth(0);
}

void TQVSetupDialog::AddObjectNode(QTreeWidgetItem* AParent, TQLPersistent* AObject, const QString& ALabel,
                                   const std::string& APath, TQLCollection* ACollection, int32_t AIndex)
{
    auto* Item =
        AParent ? new QTreeWidgetItem(AParent, QStringList(ALabel)) : new QTreeWidgetItem(FTree, QStringList(ALabel));
    Item->setData(0, Qt::UserRole, static_cast<int>(FNodes.size()));
    FNodes.push_back(TNode{AObject, ACollection, AIndex, APath});
    for (const TQLPropertyInfo* Prop : AObject->GetClassInfo().GetProperties()) {
        if (!IsShown(*Prop))
            continue;
        const std::string Path = Child(APath, Prop->Name);
        if (Prop->Kind == pkObject) {
            if (TQLPersistent* Owned = Prop->Object(*AObject))
                AddObjectNode(Item, Owned, QString::fromStdString(Prop->Name), Path, nullptr, -1);
        } else if (Prop->Kind == pkCollection) {
            TQLCollection* Owned = Prop->Collection(*AObject);
            if (!Owned)
                continue;
            auto* List = new QTreeWidgetItem(Item, QStringList(QString::fromStdString(Prop->Name)));
            List->setData(0, Qt::UserRole, static_cast<int>(FNodes.size()));
            FNodes.push_back(TNode{nullptr, Owned, -1, Path});
            for (int32_t I = 0; I < Owned->GetCount(); ++I) {
                TQLCollectionItem* Element = Owned->GetBaseItem(I);
                const QString Label =
                    QStringLiteral("[%1] %2").arg(I).arg(QString::fromStdString(Element->GetDisplayName()));
                AddObjectNode(List, Element, Label, ItemPath(Path, I), Owned, I);
            }
        }
    }
}

bool TQVSetupDialog::SelectPath(const std::string& APath)
{
    for (QTreeWidgetItemIterator It(FTree); *It; ++It) {
        const int Index = (*It)->data(0, Qt::UserRole).toInt();
        if (FNodes[size_t(Index)].Path == APath) {
            FTree->setCurrentItem(*It);
            if (FPage != Index)
                ShowPage(Index);
            return true;
        }
    }
    return false;
}

bool TQVSetupDialog::SelectObject(const TQLPersistent* AObject)
{
    for (const TQLPersistent* Object = AObject; Object; Object = Object->GetOwner())
        for (const TNode& Node : FNodes)
            if (Node.Object == Object)
                return SelectPath(Node.Path);
    return false;
}

std::string TQVSetupDialog::GetSelectedPath() const
{
    return FPage >= 0 ? FNodes[size_t(FPage)].Path : std::string();
}

TQLPersistent* TQVSetupDialog::GetSelectedObject() const
{
    return FPage >= 0 ? FNodes[size_t(FPage)].Object : nullptr;
}

void TQVSetupDialog::ShowPage(int AIndex)
{
    if (FPageWidget) {
        // The old page may hold the button whose click got us here: it goes once the click
        // is over.
        FPageLayout->removeWidget(FPageWidget);
        FPageWidget->hide();
        FPageWidget->setObjectName(QString());
        FPageWidget->deleteLater();
        FPageWidget = nullptr;
    }
    FPage = AIndex;
    FPageWidget = new QWidget;
    FPageWidget->setObjectName(QStringLiteral("SetupPage"));
    auto* Form = new QFormLayout(FPageWidget);
    FPageLayout->addWidget(FPageWidget);
    const TNode& Node = FNodes[size_t(AIndex)];
    auto* Heading =
        new QLabel(QStringLiteral("<b>%1</b>")
                       .arg(QString::fromStdString(Node.Path.empty() ? FRoot.GetClassInfo().GetName() : Node.Path)));
    Form->addRow(Heading);
    if (Node.Object) {
        for (const TQLPropertyInfo* Prop : Node.Object->GetClassInfo().GetProperties())
            if (IsShown(*Prop) && Prop->Kind != pkObject && Prop->Kind != pkCollection)
                AddEditor(Node.Object, Prop);
        if (Node.Object->GetClassInfo().InheritsFrom(TQVDisplayFont::StaticClassInfo()))
            AddFontButton(Node.Object);
    }
    if (Node.Collection)
        AddCollectionButtons(Node);
}

void TQVSetupDialog::AddEditor(TQLPersistent* AObject, const TQLPropertyInfo* AProp)
{
    auto* Form = static_cast<QFormLayout*>(FPageWidget->layout());
    const QString Name = QString::fromStdString(AProp->Name);
    const TPending* Pending = FindPending(AObject, AProp);
    const TQLValue Value = ShownValue(AObject, AProp);
    QWidget* Editor = nullptr;
    QWidget* Row = nullptr;
    switch (AProp->Kind) {
    case pkBool: {
        auto* Box = new QCheckBox;
        Box->setChecked(std::get<bool>(Value));
        connect(Box, &QCheckBox::toggled, this, [this, AObject, AProp](bool AOn) {
            SetPendingValue(AObject, AProp, AOn, AOn ? QStringLiteral("true") : QStringLiteral("false"));
        });
        Editor = Box;
        break;
    }
    case pkEnum: {
        auto* Combo = new QComboBox;
        for (const auto& [EnumValue, EnumName] : AProp->Enum->Values)
            Combo->addItem(QString::fromStdString(EnumName), QVariant::fromValue<qlonglong>(EnumValue));
        Combo->setCurrentIndex(Combo->findData(QVariant::fromValue<qlonglong>(std::get<int64_t>(Value))));
        connect(Combo, &QComboBox::currentIndexChanged, this, [this, Combo, AObject, AProp](int AIndex) {
            if (AIndex >= 0)
                SetPendingValue(AObject, AProp, static_cast<int64_t>(Combo->itemData(AIndex).toLongLong()),
                                Combo->itemText(AIndex));
        });
        Editor = Combo;
        break;
    }
    case pkSet: {
        auto* Box = new QWidget;
        auto* Layout = new QHBoxLayout(Box);
        Layout->setContentsMargins(0, 0, 0, 0);
        const int64_t Bits = std::get<int64_t>(Value);
        std::vector<std::pair<QCheckBox*, int64_t>> Checks;
        for (const auto& [Bit, BitName] : AProp->Enum->Values) {
            auto* Check = new QCheckBox(QString::fromStdString(BitName));
            Check->setObjectName(QString::fromStdString(BitName));
            Check->setChecked(Bit != 0 && (Bits & Bit) == Bit);
            Layout->addWidget(Check);
            Checks.emplace_back(Check, Bit);
        }
        for (auto& [Check, Bit] : Checks)
            connect(Check, &QCheckBox::toggled, this, [this, Checks, AObject, AProp] {
                int64_t Result = 0;
                for (const auto& [C, B] : Checks)
                    if (C->isChecked())
                        Result |= B;
                SetPendingValue(AObject, AProp, Result, QVPropertyText(*AProp, Result));
            });
        Editor = Box;
        break;
    }
    default: {
        auto* Edit = new QLineEdit(Pending ? Pending->Text : QVPropertyText(*AProp, Value));
        if (AProp->Kind == pkInteger || AProp->Kind == pkUnsigned) {
            int64_t Low, High;
            IntegerLimits(*AProp, Low, High);
            Edit->setToolTip(QStringLiteral("%1..%2").arg(QString::number(Low), QString::number(High)));
        } else if (AProp->Kind == pkReal && (std::isfinite(AProp->LowLimit) || std::isfinite(AProp->HighLimit))) {
            Edit->setToolTip(QStringLiteral("%1..%2").arg(NumberText(AProp->LowLimit), NumberText(AProp->HighLimit)));
        }
        connect(Edit, &QLineEdit::textEdited, this,
                [this, AObject, AProp](const QString& AText) { SetPending(AObject, AProp, AText); });
        Editor = Edit;
        if (AProp->Kind == pkColor) {
            // The swatch opens the colour dialog; its choice lands in the text.
            Row = new QWidget;
            auto* Layout = new QHBoxLayout(Row);
            Layout->setContentsMargins(0, 0, 0, 0);
            Layout->addWidget(Edit, 1);
            auto* Pick = new QPushButton(tr("Color..."));
            Pick->setObjectName(QStringLiteral("Color...:") + Name);
            Layout->addWidget(Pick);
            // The button wears the colour the text names, while the text names one.
            auto Paint = [Pick, AProp](const QString& AText) {
                try {
                    const auto Rgba = static_cast<QRgb>(std::get<int64_t>(QVParsePropertyText(*AProp, AText)));
                    Pick->setStyleSheet(QStringLiteral("background-color: %1").arg(QColor(Rgba).name()));
                } catch (const std::exception&) {
                    Pick->setStyleSheet(QString());
                }
            };
            Paint(Edit->text());
            connect(Edit, &QLineEdit::textChanged, Pick, Paint);
            connect(Pick, &QPushButton::clicked, this, [this, Edit, AObject, AProp] {
                QColor Initial =
                    QColor::fromRgba(static_cast<QRgb>(std::get<int64_t>(ShownValue(AObject, AProp)) & 0xFFFFFFFFu));
                const QColor Chosen = QColorDialog::getColor(Initial, this, QString::fromStdString(AProp->Name),
                                                             QColorDialog::ShowAlphaChannel);
                if (!Chosen.isValid())
                    return;
                const QString Text = QVPropertyText(*AProp, static_cast<int64_t>(Chosen.rgba()));
                Edit->setText(Text);
                SetPending(AObject, AProp, Text);
            });
        }
        break;
    }
    }
    Editor->setObjectName(Name);
    Editor->setEnabled(static_cast<bool>(AProp->Set));
    Form->addRow(Name, Row ? Row : Editor);
}

void TQVSetupDialog::AddFontButton(TQLPersistent* AObject)
{
    auto* Form = static_cast<QFormLayout*>(FPageWidget->layout());
    auto* Button = new QPushButton(tr("Font..."));
    Button->setObjectName(QStringLiteral("Font..."));
    Form->addRow(Button);
    connect(Button, &QPushButton::clicked, this, [this, AObject] {
        const TQLClassInfo& Info = AObject->GetClassInfo();
        const TQLPropertyInfo* NameProp = Info.FindProperty("Name");
        const TQLPropertyInfo* SizeProp = Info.FindProperty("Size");
        const TQLPropertyInfo* StyleProp = Info.FindProperty("Style");
        QFont Initial(QString::fromStdString(std::get<std::string>(ShownValue(AObject, NameProp))));
        Initial.setPointSize(static_cast<int>(std::get<int64_t>(ShownValue(AObject, SizeProp))));
        const int64_t Style = std::get<int64_t>(ShownValue(AObject, StyleProp));
        Initial.setBold(Style & fsBold);
        Initial.setItalic(Style & fsItalic);
        Initial.setUnderline(Style & fsUnderline);
        Initial.setStrikeOut(Style & fsStrikeOut);
        bool Ok = false;
        const QFont Chosen = QFontDialog::getFont(&Ok, Initial, this);
        if (!Ok)
            return;
        const int64_t NewStyle = (Chosen.bold() ? fsBold : 0) | (Chosen.italic() ? fsItalic : 0) |
                                 (Chosen.underline() ? fsUnderline : 0) | (Chosen.strikeOut() ? fsStrikeOut : 0);
        SetPendingValue(AObject, NameProp, Chosen.family().toStdString(), Chosen.family());
        SetPending(AObject, SizeProp, QString::number(Chosen.pointSize()));
        SetPendingValue(AObject, StyleProp, NewStyle, QVPropertyText(*StyleProp, NewStyle));
        ShowPage(FPage);
    });
}

void TQVSetupDialog::AddCollectionButtons(const TNode& ANode)
{
    auto* Form = static_cast<QFormLayout*>(FPageWidget->layout());
    TQLCollection* Collection = ANode.Collection;
    if (ANode.ItemIndex < 0) {
        Form->addRow(tr("Items"), new QLabel(QString::number(Collection->GetCount())));
        auto* Add = new QPushButton(tr("Add"));
        Add->setObjectName(QStringLiteral("Add"));
        Form->addRow(Add);
        const std::string Path = ANode.Path;
        connect(Add, &QPushButton::clicked, this, [this, Collection, Path] {
            ChangeStructure([Collection] { Collection->AddItem(); }, ItemPath(Path, Collection->GetCount()));
        });
    } else {
        auto* Delete = new QPushButton(tr("Delete"));
        Delete->setObjectName(QStringLiteral("Delete"));
        Form->addRow(Delete);
        const int32_t Index = ANode.ItemIndex;
        const std::string ListPath = ANode.Path.substr(0, ANode.Path.rfind('['));
        connect(Delete, &QPushButton::clicked, this, [this, Collection, Index, ListPath] {
            ChangeStructure([Collection, Index] { Collection->Delete(Index); }, ListPath);
        });
    }
}

QWidget* TQVSetupDialog::FindEditor(const std::string& AName) const
{
    return FPageWidget ? FPageWidget->findChild<QWidget*>(QString::fromStdString(AName)) : nullptr;
}

QPushButton* TQVSetupDialog::FindPageButton(const QString& AText) const
{
    return FPageWidget ? FPageWidget->findChild<QPushButton*>(AText) : nullptr;
}

const TQVSetupDialog::TPending* TQVSetupDialog::FindPending(const TQLPersistent* AObject,
                                                            const TQLPropertyInfo* AProp) const
{
    for (const TPending& P : FPending)
        if (P.Object == AObject && P.Prop == AProp)
            return &P;
    return nullptr;
}

TQLValue TQVSetupDialog::ShownValue(TQLPersistent* AObject, const TQLPropertyInfo* AProp) const
{
    const TPending* P = FindPending(AObject, AProp);
    return P && P->Error.isEmpty() ? P->Value : AProp->Get(*AObject);
}

void TQVSetupDialog::SetPending(TQLPersistent* AObject, const TQLPropertyInfo* AProp, const QString& AText)
{
    TQLValue Value;
    QString Error;
    try {
        Value = QVParsePropertyText(*AProp, AText);
    } catch (const std::exception& E) {
        Error = QString::fromStdString(E.what());
    }
    for (TPending& P : FPending)
        if (P.Object == AObject && P.Prop == AProp) {
            P.Value = Value;
            P.Text = AText;
            P.Error = Error;
            UpdateButtons();
            return;
        }
    FPending.push_back(TPending{AObject, AProp, Value, AText, Error});
    UpdateButtons();
}

void TQVSetupDialog::SetPendingValue(TQLPersistent* AObject, const TQLPropertyInfo* AProp, const TQLValue& AValue,
                                     const QString& AText)
{
    for (TPending& P : FPending)
        if (P.Object == AObject && P.Prop == AProp) {
            P.Value = AValue;
            P.Text = AText;
            P.Error.clear();
            UpdateButtons();
            return;
        }
    FPending.push_back(TPending{AObject, AProp, AValue, AText, {}});
    UpdateButtons();
}

void TQVSetupDialog::SetError(const QString& AText)
{
    FError = AText;
    FErrorLabel->setText(AText);
}

bool TQVSetupDialog::Apply()
{
    for (const TPending& P : FPending)
        if (!P.Error.isEmpty()) {
            SetError(P.Error);
            return false;
        }
    if (FPending.empty()) {
        SetError({});
        return true;
    }
    TState Before = SaveState();
    {
        std::vector<TQLLockGuard> Guards;
        for (TQLPersistent* Root : FRoots)
            Guards.push_back(Root->GetLock()->AcquireWrite());
        try {
            for (const TPending& P : FPending) {
                const TQLValue Current = P.Prop->Get(*P.Object);
                if (Current != P.Value)
                    P.Prop->Set(*P.Object, P.Value);
            }
        } catch (const std::exception& E) {
            // A setter refused a value: everything goes back as it was.
            Restore(Before);
            SetError(QString::fromStdString(E.what()));
            return false;
        }
    }
    FUndo.push_back(std::move(Before));
    FPending.clear();
    SetError({});
    ShowPage(FPage);
    UpdateButtons();
    return true;
}

template <class F>
bool TQVSetupDialog::ChangeStructure(F&& AChange, const std::string& ASelectPath)
{
    if (!Apply())
        return false;
    TState Before = SaveState();
    try {
        auto Guard = FRoot.GetLock()->AcquireWrite();
        AChange();
    } catch (const std::exception& E) {
        Restore(Before);
        SetError(QString::fromStdString(E.what()));
        return false;
    }
    FUndo.push_back(std::move(Before));
    BuildTree();
    if (!SelectPath(ASelectPath))
        SelectPath({});
    UpdateButtons();
    return true;
}

TQVSetupDialog::TState TQVSetupDialog::SaveState() const
{
    TState State;
    for (const TQLPersistent* Root : FRoots)
        State.push_back(QLSaveObject(*Root));
    return State;
}

void TQVSetupDialog::Restore(const TState& AState)
{
    // Each state was saved from the very object it goes back to, so it loads back.
    for (size_t I = 0; I < FRoots.size() && I < AState.size(); ++I)
        QLLoadObject(*FRoots[I], AState[I]);
}

bool TQVSetupDialog::Undo()
{
    if (FUndo.empty())
        return false;
    const std::string Path = GetSelectedPath();
    FPending.clear();
    Restore(FUndo.back());
    FUndo.pop_back();
    SetError({});
    BuildTree();
    if (!SelectPath(Path))
        SelectPath({});
    UpdateButtons();
    return true;
}

void TQVSetupDialog::UpdateButtons()
{
    FApply->setEnabled(!FPending.empty());
    FUndoButton->setEnabled(!FUndo.empty());
}

void TQVSetupDialog::accept()
{
    if (Apply())
        QDialog::accept();
}

void TQVSetupDialog::reject()
{
    FPending.clear();
    if (!FUndo.empty()) {
        Restore(FOpenState);
        FUndo.clear();
    }
    QDialog::reject();
}

} // namespace qv
