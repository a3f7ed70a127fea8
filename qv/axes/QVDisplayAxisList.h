#pragma once
// A list of axes that does not own them: a display keeps one of all its axes, one of its X
// axes and one of its Y axes. Axes add and remove themselves.

#include <cstdint>
#include <vector>

namespace qv {

class TQVDisplayAxis;

class TQVDisplayAxisList {
public:
    int32_t GetCount() const { return static_cast<int32_t>(FItems.size()); }
    // Raises EQLListError, naming the index, when it is out of range.
    TQVDisplayAxis* GetItem(int32_t AIndex) const;
    // -1 when the axis is not in the list.
    int32_t IndexOf(const TQVDisplayAxis* AAxis) const;
    // Appends; an axis already in the list stays where it is.
    void Add(TQVDisplayAxis* AAxis);
    void Remove(const TQVDisplayAxis* AAxis);

    auto begin() const { return FItems.begin(); }
    auto end() const { return FItems.end(); }

private:
    std::vector<TQVDisplayAxis*> FItems;
};

} // namespace qv
