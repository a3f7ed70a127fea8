#pragma once
// Hosting displays inside other controls. A display can be drawn as an element of a host's
// picture (placed by fractions of the host's size) or rendered into a host's pixel matrix;
// a display in turn hosts such elements and draws them behind everything else it draws.
// The host side is told only through IQVElementHost, so a host need not be a display.

#include "qv/component/QVScopeElements.h"
#include "qv/foundation/QLBitmap.h"
#include "qv/foundation/QLCanvas.h"
#include "qv/foundation/QLPersistent.h"
#include "qv/foundation/QLStoredForm.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace qv {

// Makes a drawing surface over a bitmap; a platform library provides one (qv::qt's
// QLQtCanvasFactory). Without it the display still paints onto any canvas handed to
// PaintToCanvas.
using TQLCanvasFactory = std::function<std::unique_ptr<TQLCanvas>(TQLBitmap& ABitmap)>;

// Two fractions of a host's size, X and Y. Get turns a fraction into pixels of a host
// length. Values must be finite; std::invalid_argument names a bad one.
class TQUElementPair : public TQLPersistentNotify {
public:
    TQUElementPair(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify, double AX, double AY);

    double GetX() const { return FX; }
    void SetX(double AValue);
    double GetY() const { return FY; }
    void SetY(double AValue);
    double GetXDefault() const { return FXDefault; }
    double GetYDefault() const { return FYDefault; }
    // The pixels that a fraction stands for in a host length.
    double GetXOf(double AHostLength) const { return FX * AHostLength; }
    double GetYOf(double AHostLength) const { return FY * AHostLength; }
    // New values that are also the defaults the stored form compares with.
    void SetValueDefault(double AX, double AY);

    QL_CLASS_INFO()

protected:
    // Refuses what this pair cannot hold; the base refuses values that are not finite.
    virtual void CheckValue(const char* AName, double AValue) const;

private:
    double FX, FY;
    double FXDefault, FYDefault;
};

// Where an element sits: offsets from the host's centre, as fractions of the host's radii.
class TQUElementOffsets : public TQUElementPair {
public:
    using TQUElementPair::TQUElementPair;
    QL_CLASS_INFO()
};

// How large an element is, as fractions of the host's size; never negative.
class TQUElement2DSize : public TQUElementPair {
public:
    using TQUElementPair::TQUElementPair;
    QL_CLASS_INFO()

protected:
    void CheckValue(const char* AName, double AValue) const override;
};

// What an element's host offers it: a repaint, and the surface factory an element without
// one of its own borrows.
class IQVElementHost {
public:
    virtual ~IQVElementHost() = default;
    virtual void InvalidateOwner() = 0;
    virtual const TQLCanvasFactory& GetElementCanvasFactory() const = 0;
};

// An element that a host list holds.
class IQLComponentElement {
public:
    virtual ~IQLComponentElement() = default;
    virtual bool GetVisible() const = 0;
    // The host list it now belongs to, or null when it leaves one.
    virtual void SetListOwner(IQVElementHost* AOwner) = 0;
    // The host's refresh tick reaches its elements.
    virtual void RefreshElement() = 0;
};

// An element drawn into a host's picture. ARadiusX and ARadiusY are half the host's size,
// AWidth and AHeight its size; AXCoeff and AYCoeff scale device pixels.
class IQLDrawComponentElement : public virtual IQLComponentElement {
public:
    virtual void Draw(TQLCanvas& AGraphics, bool AContoursOnly, float ARadiusX, float ARadiusY, float AWidth,
                      float AHeight, float AXCoeff, float AYCoeff) = 0;
};

// An element rendered into a host's 32-bit premultiplied pixels, AWidth by AHeight.
class IQLMatrixComponentElement : public virtual IQLComponentElement {
public:
    virtual void Render(uint32_t* ABuffer, uint32_t AWidth, uint32_t AHeight) = 0;
};

// The hosted display classes a display makes by name when it loads its elements (the
// scope's and the waterfall's element classes); null for any other name.
const TQLClassInfo* QVFindElementClass(const std::string& AName);
std::unique_ptr<IQLDrawComponentElement> QVMakeElement(const std::string& AName);

// The elements a display hosts, owned, drawn in index order behind everything else. The
// list draws as the external-element family of a display's draw order. It is stored with
// its host's settings as "Elements": the elements of the classes QVMakeElement makes, each
// with its class name; other elements are left out of the stored form and kept by a load,
// after the loaded ones.
class TQVDisplayElements : public IQVScopeElementFamily, public IQLStoredList {
public:
    explicit TQVDisplayElements(IQVElementHost& AHost) : FHost(AHost) {}
    ~TQVDisplayElements() override;
    TQVDisplayElements(const TQVDisplayElements&) = delete;
    TQVDisplayElements& operator=(const TQVDisplayElements&) = delete;

    int32_t GetCount() const { return static_cast<int32_t>(FItems.size()); }
    // Raises std::out_of_range naming the index.
    IQLDrawComponentElement* GetItem(int32_t AIndex) const;
    // Takes an element into the list; it joins the host (and borrows its surface factory).
    // Raises std::invalid_argument for a null element.
    IQLDrawComponentElement* Add(std::unique_ptr<IQLDrawComponentElement> AElement);
    // A new element of class T at the end.
    template <class T>
    T* Add()
    {
        static_assert(std::is_base_of_v<IQLDrawComponentElement, T>);
        auto Element = std::make_unique<T>();
        T* Result = Element.get();
        Add(std::move(Element));
        return Result;
    }
    void Delete(int32_t AIndex);
    void Clear();
    int32_t IndexOf(const IQLDrawComponentElement* AItem) const;
    auto begin() const { return FItems.begin(); }
    auto end() const { return FItems.end(); }

    // Every visible element into ACanvas over AClip, the host's whole picture: radii of half
    // its size, factors 1.
    void DrawElements(TQVDisplayDrawPart APart, TQLCanvas& ACanvas, const TRect& AClip, bool APrinting) override;
    // Passes the host's refresh tick on to every element.
    void RefreshElements();

    std::string GetStoredName() const override { return "Elements"; }
    std::vector<TQLPersistent*> GetStoredItems() const override;
    const TQLClassInfo* FindStoredClass(const std::string& AClass) const override { return QVFindElementClass(AClass); }
    std::unique_ptr<TQLPersistent> MakeStoredItem(const std::string& AClass) const override;
    void ReplaceStoredItems(std::vector<TSlot> ASlots) override;

private:
    IQVElementHost& FHost;
    std::vector<std::unique_ptr<IQLDrawComponentElement>> FItems;
};

} // namespace qv
