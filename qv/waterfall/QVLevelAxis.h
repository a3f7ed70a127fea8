#pragma once
// The settings of a level display: its scale (colour, font, precision, visibility, scale
// mode, and the level range, fixed or from the data), its colour list and its caption. Every
// change lays the level view out anew.

#include "qv/axes/QVAxisFormat.h"
#include "qv/axes/QVAxisTypes.h"
#include "qv/decor/QVOptionalLabel.h"
#include "qv/foundation/QLCollection.h"
#include "qv/foundation/QLPersistent.h"
#include "qv/foundation/QVDisplayFont.h"

#include <memory>
#include <string>
#include <vector>

namespace qv {

class TQVBasicLevelDisplayLevelView;

class TQVBasicLevelAxis : public TQLPersistentNotify {
public:
    TQVBasicLevelAxis(TQVBasicLevelDisplayLevelView* ALevelView, TQLLockPtr ALock);
    ~TQVBasicLevelAxis() override;

    TAlphaColor GetColor() const { return FColor; }
    void SetColor(TAlphaColor AValue) { Set(FColor, AValue); }
    TQVDisplayFont* GetFont() const { return FFont.get(); }
    void SetFont(const TQVDisplayFont* AValue) { FFont->Assign(AValue); }
    // Decimals of the tick texts, 0 to 18; another value raises std::out_of_range naming it.
    int32_t GetPrecision() const { return FPrecision; }
    void SetPrecision(int32_t AValue);
    bool GetFixedPrecision() const { return FFixedPrecision; }
    void SetFixedPrecision(bool AValue) { Set(FFixedPrecision, AValue); }
    bool GetVisible() const { return FVisible; }
    void SetVisible(bool AValue) { Set(FVisible, AValue); }
    TQVScaleMode GetScaleMode() const { return FScaleMode; }
    void SetScaleMode(TQVScaleMode AValue) { Set(FScaleMode, AValue); }

    QL_CLASS_INFO()

protected:
    TQVBasicLevelDisplayLevelView* FLevelView;

private:
    TAlphaColor FColor = 0xFFFFFFFF;
    std::unique_ptr<TQVDisplayFont> FFont;
    int32_t FPrecision = 3;
    bool FFixedPrecision = false;
    bool FVisible = true;
    TQVScaleMode FScaleMode = smLinear;
};

class TQVLevelAxis : public TQVBasicLevelAxis {
public:
    using TQVBasicLevelAxis::TQVBasicLevelAxis;

    // The levels follow the data's running range while rows exist, else Min and Max.
    bool GetAutoscale() const { return FAutoscale; }
    void SetAutoscale(bool AValue) { Set(FAutoscale, AValue); }
    // Finite values only; NaN or an infinity raises std::invalid_argument naming it.
    double GetMin() const { return FMin; }
    void SetMin(double AValue);
    double GetMax() const { return FMax; }
    void SetMax(double AValue);
    void SetOnCustomLabel(TQVCustomAxisLabelEvent AHandler) { FOnCustomLabel = std::move(AHandler); }
    const TQVCustomAxisLabelEvent& GetOnCustomLabel() const { return FOnCustomLabel; }
    // For OnCustomLabel handlers: the text of the tick being asked for.
    void SetTickText(const std::string& AValue);
    // The text of a tick after OnCustomLabel.
    std::string CustomTickText(double AValue, const std::string& AText);

    QL_CLASS_INFO()

private:
    bool FAutoscale = true;
    double FMin = 0.0;
    double FMax = 1000.0;
    TQVCustomAxisLabelEvent FOnCustomLabel;
    bool FNewText = false;
    std::string FNewTickText;
};

// One colour of the level gradient; the colours stand at equal distances over the range.
class TQVLevelDisplayColor : public TQLCollectionItem {
public:
    explicit TQVLevelDisplayColor(TQLCollection* ACollection) : TQLCollectionItem(ACollection) {}
    TAlphaColor GetColor() const { return FColor; }
    void SetColor(TAlphaColor AValue) { Set(FColor, AValue); }

    QL_CLASS_INFO()

private:
    TAlphaColor FColor = 0xFF000000;
};

class TQVLevelDisplayColors : public TQLTypedCollection<TQVLevelDisplayColor> {
public:
    TQVLevelDisplayColors(TQVBasicLevelDisplayLevelView* AOwner, TQLLockPtr ALock);
    // A new colour is the one of the table least used by the other colours, earlier on a tie.
    void NewItemCreated(TQLCollectionItem* AItem) override;
    void Update(TQLCollectionItem* AItem) override;
    // The colours in order.
    std::vector<TAlphaColor> GetColorValues() const;

private:
    TQVBasicLevelDisplayLevelView* FOwner;
};

// The caption of the level display: bold, size 10.
class TQVBasicLevelDisplayLabel : public TQVBasicOptionalLabel {
public:
    TQVBasicLevelDisplayLabel(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc AOnChange);

    QL_CLASS_INFO()
};

class TQVLevelDisplayLabel : public TQVBasicLevelDisplayLabel {
public:
    using TQVBasicLevelDisplayLabel::TQVBasicLevelDisplayLabel;
    const std::string& GetText() const { return FText; }
    void SetText(const std::string& AValue) { Set(FText, AValue); }

    QL_CLASS_INFO()

private:
    std::string FText;
};

} // namespace qv
