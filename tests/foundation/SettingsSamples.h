#pragma once
// A settings hierarchy publishing one property of every kind the registry knows. Loaded hooks
// write into LoadedLog so that tests can check their order.

#include "qv/foundation/QLClassBuilder.h"
#include "qv/foundation/QLCollection.h"
#include "qv/foundation/QLPersistent.h"
#include "qv/foundation/QVDisplayFont.h"
#include "qv/foundation/QVDisplayPen.h"

#include <memory>
#include <string>
#include <vector>

namespace qvtest {

enum TSampleShape : uint8_t { ssCircle, ssSquare, ssTriangle };

using TSampleFlags = uint32_t;
inline constexpr TSampleFlags sfGrid = 0x01;
inline constexpr TSampleFlags sfLabels = 0x02;
inline constexpr TSampleFlags sfTicks = 0x04;

inline const qv::TQLEnumInfo& SampleFlagsInfo()
{
    static const qv::TQLEnumInfo Info{
        "TSampleFlags", {{sfGrid, "sfGrid"}, {sfLabels, "sfLabels"}, {sfTicks, "sfTicks"}}, true};
    return Info;
}

inline std::vector<std::string>& LoadedLog()
{
    static std::vector<std::string> Log;
    return Log;
}

} // namespace qvtest

QL_DECLARE_ENUM(qvtest::TSampleShape, "ssCircle", "ssSquare", "ssTriangle")

namespace qvtest {

class TSampleMarker : public qv::TQLPersistentNotify {
public:
    TSampleMarker(qv::TQLPersistent* AOwner, qv::TQLLockPtr ALock, std::string ATag)
        : TQLPersistentNotify(AOwner, std::move(ALock), {}), FTag(std::move(ATag))
    {}

    double GetOffset() const { return FOffset; }
    void SetOffset(double AValue) { Set(FOffset, AValue); }
    int32_t GetRadius() const { return FRadius; }
    void SetRadius(int32_t AValue) { GetBasicLock().SetterMinMax(FRadius, AValue, 1, 50); }

    void Loaded() override { LoadedLog().push_back(FTag + ".Marker"); }

    QL_CLASS_INFO()

private:
    std::string FTag;
    double FOffset = 0.0;
    int32_t FRadius = 3;
};

inline const qv::TQLClassInfo& TSampleMarker::StaticClassInfo()
{
    static const qv::TQLClassInfo Info =
        qv::TQLClassBuilder<TSampleMarker>("TSampleMarker", &qv::TQLPersistentNotify::StaticClassInfo())
            .Property("Offset", &TSampleMarker::GetOffset, &TSampleMarker::SetOffset, 0.0)
            .Property("Radius", &TSampleMarker::GetRadius, &TSampleMarker::SetRadius, 3)
            .Build();
    return Info;
}

class TSampleItem : public qv::TQLNamedCollectionItem {
public:
    explicit TSampleItem(qv::TQLCollection* ACollection)
        : TQLNamedCollectionItem(ACollection), FFont(std::make_unique<qv::TQVDisplayFont>(this, GetLock())),
          FMarker(std::make_unique<TSampleMarker>(this, GetLock(), "Item"))
    {}

    int32_t GetWeight() const { return FWeight; }
    void SetWeight(int32_t AValue) { Set(FWeight, AValue); }
    double GetRatio() const { return FRatio; }
    void SetRatio(double AValue) { Set(FRatio, AValue); }
    qv::TQVDisplayFont* GetFont() const { return FFont.get(); }
    TSampleMarker* GetMarker() const { return FMarker.get(); }

    void Loaded() override { LoadedLog().push_back("Item " + FName); }

    QL_CLASS_INFO()

private:
    int32_t FWeight = 0;
    double FRatio = 0.25;
    std::unique_ptr<qv::TQVDisplayFont> FFont;
    std::unique_ptr<TSampleMarker> FMarker;
};

inline const qv::TQLClassInfo& TSampleItem::StaticClassInfo()
{
    static const qv::TQLClassInfo Info =
        qv::TQLClassBuilder<TSampleItem>("TSampleItem", &qv::TQLNamedCollectionItem::StaticClassInfo())
            .Property("Weight", &TSampleItem::GetWeight, &TSampleItem::SetWeight, 0)
            .Property("Ratio", &TSampleItem::GetRatio, &TSampleItem::SetRatio, 0.25)
            .Object("Font", &TSampleItem::GetFont)
            .Object("Marker", &TSampleItem::GetMarker)
            .Build();
    return Info;
}

using TSampleItems = qv::TQLTypedCollection<TSampleItem>;

// The back and pen colour defaults come from the constructor: instances may differ in them.
class TSampleSettings : public qv::TQLPersistent {
public:
    explicit TSampleSettings(qv::TQLLockPtr ALock = qv::QLMakeLock(), qv::TAlphaColor ABackDefault = 0xFF202020,
                             qv::TAlphaColor APenDefault = 0xFF00FF00)
        : TQLPersistent(nullptr, std::move(ALock)), FBack(ABackDefault), FBackDefault(ABackDefault),
          FPen(std::make_unique<qv::TQVDisplayPen>(this, GetLock(), qv::TQLNotifyProc{}, APenDefault)),
          FMarker(std::make_unique<TSampleMarker>(this, GetLock(), "Root")),
          FItems(std::make_unique<TSampleItems>(this, GetLock()))
    {}

    bool GetEnabled() const { return FEnabled; }
    void SetEnabled(bool AValue) { Set(FEnabled, AValue); }
    int16_t GetSmall() const { return FSmall; }
    void SetSmall(int16_t AValue) { Set(FSmall, AValue); }
    int32_t GetPercent() const { return FPercent; }
    void SetPercent(int32_t AValue) { GetBasicLock().SetterMinMax(FPercent, AValue, 0, 100); }
    int64_t GetBig() const { return FBig; }
    void SetBig(int64_t AValue) { Set(FBig, AValue); }
    uint32_t GetMask() const { return FMask; }
    void SetMask(uint32_t AValue) { Set(FMask, AValue); }
    double GetGain() const { return FGain; }
    void SetGain(double AValue) { GetBasicLock().SetterMinMax(FGain, AValue, 0.0, 100.0); }
    double GetLevel() const { return FLevel; }
    void SetLevel(double AValue) { Set(FLevel, AValue); }
    const std::string& GetTitle() const { return FTitle; }
    void SetTitle(const std::string& AValue) { Set(FTitle, AValue); }
    qv::TAlphaColor GetBack() const { return FBack; }
    void SetBack(qv::TAlphaColor AValue) { GetBasicLock().Setter(FBack, AValue, nullptr, false); }
    qv::TAlphaColor GetBackDefault() const { return FBackDefault; }
    TSampleShape GetShape() const { return FShape; }
    void SetShape(TSampleShape AValue) { Set(FShape, AValue); }
    TSampleFlags GetFlags() const { return FFlags; }
    void SetFlags(TSampleFlags AValue) { Set(FFlags, AValue); }
    int32_t GetAxisIndex() const { return FAxisIndex; }
    void SetAxisIndex(int32_t AValue) { Set(FAxisIndex, AValue); }
    int32_t GetRevision() const { return 7; }

    qv::TQVDisplayPen* GetPen() const { return FPen.get(); }
    TSampleMarker* GetMarker() const { return FMarker.get(); }
    TSampleItems* GetItems() const { return FItems.get(); }

    void Loaded() override { LoadedLog().push_back("Root"); }

    QL_CLASS_INFO()

private:
    bool FEnabled = true;
    int16_t FSmall = 0;
    int32_t FPercent = 50;
    int64_t FBig = 0;
    uint32_t FMask = 0;
    double FGain = 1.5;
    double FLevel = 0.0;
    std::string FTitle = "scope";
    qv::TAlphaColor FBack;
    qv::TAlphaColor FBackDefault;
    TSampleShape FShape = ssSquare;
    TSampleFlags FFlags = sfGrid;
    int32_t FAxisIndex = 0;
    std::unique_ptr<qv::TQVDisplayPen> FPen;
    std::unique_ptr<TSampleMarker> FMarker;
    std::unique_ptr<TSampleItems> FItems;
};

inline const qv::TQLClassInfo& TSampleSettings::StaticClassInfo()
{
    static const qv::TQLClassInfo Info =
        qv::TQLClassBuilder<TSampleSettings>("TSampleSettings", &qv::TQLPersistent::StaticClassInfo())
            .Property("Enabled", &TSampleSettings::GetEnabled, &TSampleSettings::SetEnabled, true)
            .Property("Small", &TSampleSettings::GetSmall, &TSampleSettings::SetSmall, 0)
            .Property("Percent", &TSampleSettings::GetPercent, &TSampleSettings::SetPercent, 50)
            .Property("Big", &TSampleSettings::GetBig, &TSampleSettings::SetBig, 0)
            .Property("Mask", &TSampleSettings::GetMask, &TSampleSettings::SetMask, 0u)
            .Property("Gain", &TSampleSettings::GetGain, &TSampleSettings::SetGain, 1.5)
            .Property("Level", &TSampleSettings::GetLevel, &TSampleSettings::SetLevel, 0.0)
            .Property("Title", &TSampleSettings::GetTitle, &TSampleSettings::SetTitle, "scope")
            .Color("Back", &TSampleSettings::GetBack, &TSampleSettings::SetBack, &TSampleSettings::GetBackDefault)
            .Property("Shape", &TSampleSettings::GetShape, &TSampleSettings::SetShape, ssSquare)
            .Set("Flags", &TSampleSettings::GetFlags, &TSampleSettings::SetFlags, sfGrid, SampleFlagsInfo())
            .Property("Revision", &TSampleSettings::GetRevision, nullptr)
            .Object("Pen", &TSampleSettings::GetPen)
            .Object("Marker", &TSampleSettings::GetMarker)
            .Collection("Items", &TSampleSettings::GetItems)
            .Defined("AxisIndex_", &TSampleSettings::GetAxisIndex, &TSampleSettings::SetAxisIndex)
            .Build();
    return Info;
}

class TSampleSettingsEx : public TSampleSettings {
public:
    using TSampleSettings::TSampleSettings;

    int32_t GetExtra() const { return FExtra; }
    void SetExtra(int32_t AValue) { Set(FExtra, AValue); }

    QL_CLASS_INFO()

private:
    int32_t FExtra = 0;
};

inline const qv::TQLClassInfo& TSampleSettingsEx::StaticClassInfo()
{
    static const qv::TQLClassInfo Info =
        qv::TQLClassBuilder<TSampleSettingsEx>("TSampleSettingsEx", &TSampleSettings::StaticClassInfo())
            .Property("Extra", &TSampleSettingsEx::GetExtra, &TSampleSettingsEx::SetExtra, 0)
            .Build();
    return Info;
}

// A non-default value in every published property, and two items.
inline void FillSample(TSampleSettings& A)
{
    A.SetEnabled(false);
    A.SetSmall(-1234);
    A.SetPercent(75);
    A.SetBig(int64_t(1) << 40);
    A.SetMask(0xDEADBEEFu);
    A.SetGain(42.125);
    A.SetLevel(-0.1);
    A.SetTitle("Noise \xC2\xB5V"); // non-ASCII on purpose
    A.SetBack(0x80112233);
    A.SetShape(ssTriangle);
    A.SetFlags(sfLabels | sfTicks);
    A.SetAxisIndex(2);
    A.GetPen()->SetColor(0xFF0000FF);
    A.GetPen()->SetWidth(3);
    A.GetPen()->SetDash(qv::sdDot);
    A.GetMarker()->SetOffset(12.5);
    A.GetMarker()->SetRadius(9);
    TSampleItem* First = A.GetItems()->Add();
    First->SetName("first");
    First->SetWeight(10);
    First->GetFont()->SetSize(14);
    First->GetFont()->SetStyle(qv::fsBold | qv::fsItalic);
    TSampleItem* Second = A.GetItems()->Add();
    Second->SetName("second");
    Second->SetRatio(0.75);
    Second->GetFont()->SetName("Courier");
    Second->GetFont()->SetColor(0xFFABCDEF);
    Second->GetMarker()->SetOffset(-3.5);
}

} // namespace qvtest
