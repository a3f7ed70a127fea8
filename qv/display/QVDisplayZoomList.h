#pragma once
// Zoom history: a snapshot of every axis' zoom window, and the bounded stack of snapshots
// behind undo and redo.

#include <cstdint>
#include <memory>
#include <vector>

namespace qv {

class TQVDisplayAxis;

// One axis in a snapshot.
struct TQVAxisZoomListItem {
    TQVDisplayAxis* Axis = nullptr;
    double Min = 0.0;
    double Max = 0.0;
    bool Zoomed = false;
};

// The zoom state of a set of axes at one moment.
class TQVAxisZoomList {
public:
    // Records the axis' zoom window as it stands now.
    void Add(TQVDisplayAxis* AAxis);
    void Add(const TQVAxisZoomListItem& AItem) { FItems.push_back(AItem); }
    // Whether both describe the same zoom: the same axes, each zoomed or not alike, and the
    // zoomed ones with exactly the same window. Windows of axes that are not zoomed are
    // not compared, since they do not show.
    bool IsEqual(const TQVAxisZoomList& AOther) const;
    // Forgets an axis that is going away.
    void Remove(const TQVDisplayAxis* AAxis);

    int32_t GetCount() const { return static_cast<int32_t>(FItems.size()); }
    // Raises EQLListError, naming the index, when it is out of range.
    const TQVAxisZoomListItem& GetItem(int32_t AIndex) const;
    auto begin() const { return FItems.begin(); }
    auto end() const { return FItems.end(); }

private:
    std::vector<TQVAxisZoomListItem> FItems;
};

// A stack of snapshots, at most MaxDepth deep: the oldest falls out when a new one would
// exceed it, and a snapshot equal to the top is not stored again.
class TQVDisplayZoomList {
public:
    static constexpr int32_t MaxDepth = 100;

    void Clear() { FList.clear(); }
    // Takes ownership. A null list raises std::invalid_argument.
    void Add(std::unique_ptr<TQVAxisZoomList> AAxisList);
    // Pops the top into AAxisList and returns true; false with AAxisList null when empty.
    bool Get(std::unique_ptr<TQVAxisZoomList>& AAxisList);
    bool HasItems() const { return !FList.empty(); }
    int32_t GetCount() const { return static_cast<int32_t>(FList.size()); }
    // Forgets an axis in every snapshot.
    void RemoveAxis(const TQVDisplayAxis* AAxis);

private:
    std::vector<std::unique_ptr<TQVAxisZoomList>> FList;
};

} // namespace qv
