#pragma once
// The chart as the measurement elements see it: what cursors and links need beyond the
// display's own services (TQVDisplayOwner) and the channels (TQVScopeOwner).

#include "qv/component/QVDisplayOwner.h"

#include <string>

namespace qv {

class TQVDisplayTrails;
class TQVScopeCursors;

class TQVElementsOwner {
public:
    virtual ~TQVElementsOwner() = default;

    // Cursors outside the view are drawn at its edge, dashed.
    virtual bool GetCursorsStayInView() const = 0;
    // Colour and font of what a drag leaves behind: ghost lines and differences.
    virtual TQVDisplayTrails* GetTrails() const = 0;
    // The cursors that links join.
    virtual TQVScopeCursors* GetCursors() const = 0;
    // AValue put into a measurement label's template ALabelText, or into ADefault when the
    // label has none.
    virtual std::string GetMeasurementLabelText(const std::string& AValue, const std::string& ALabelText,
                                                const std::string& ADefault) const = 0;
    // A label's template ALabelText (or ADefault) filled with the point's values in the main
    // axes' texts ("%X", "%Y").
    virtual std::string GetFormatLabelText(const TPoint& APoint, double AX, double AY, const std::string& ALabelText,
                                           const std::string& ADefault) const = 0;

    // The elements' view of ADisplay; null for a display that has no elements.
    static TQVElementsOwner* Of(const TQVDisplayOwner* ADisplay)
    {
        return dynamic_cast<TQVElementsOwner*>(const_cast<TQVDisplayOwner*>(ADisplay));
    }
};

} // namespace qv
