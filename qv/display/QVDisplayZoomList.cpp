#include "qv/display/QVDisplayZoomList.h"

#include "qv/axes/QVDisplayAxis.h"
#include "qv/foundation/QLCollection.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace qv {

// ---- TQVAxisZoomList ----

void TQVAxisZoomList::Add(TQVDisplayAxis* AAxis)
{
    if (!AAxis)
        throw std::invalid_argument("TQVAxisZoomList.Add: no axis given");
    FItems.push_back(TQVAxisZoomListItem{AAxis, AAxis->GetZoomMin(), AAxis->GetZoomMax(), AAxis->IsZoomed()});
}

bool TQVAxisZoomList::IsEqual(const TQVAxisZoomList& AOther) const
{
    if (FItems.size() != AOther.FItems.size())
        return false;
    for (const TQVAxisZoomListItem& Mine : FItems) {
        const auto Theirs = std::find_if(AOther.FItems.begin(), AOther.FItems.end(),
                                         [&Mine](const TQVAxisZoomListItem& AItem) { return AItem.Axis == Mine.Axis; });
        if (Theirs == AOther.FItems.end() || Theirs->Zoomed != Mine.Zoomed)
            return false;
        if (Mine.Zoomed && (Theirs->Min != Mine.Min || Theirs->Max != Mine.Max))
            return false;
    }
    return true;
}

void TQVAxisZoomList::Remove(const TQVDisplayAxis* AAxis)
{
    std::erase_if(FItems, [AAxis](const TQVAxisZoomListItem& AItem) { return AItem.Axis == AAxis; });
}

const TQVAxisZoomListItem& TQVAxisZoomList::GetItem(int32_t AIndex) const
{
    if (AIndex < 0 || AIndex >= GetCount())
        throw EQLListError(AIndex);
    return FItems[static_cast<size_t>(AIndex)];
}

// ---- TQVDisplayZoomList ----

void TQVDisplayZoomList::Add(std::unique_ptr<TQVAxisZoomList> AAxisList)
{
    if (!AAxisList)
        throw std::invalid_argument("TQVDisplayZoomList.Add: no snapshot given");
    if (!FList.empty() && AAxisList->IsEqual(*FList.back()))
        return; // a repeat of the top is not stored
    FList.push_back(std::move(AAxisList));
    if (GetCount() > MaxDepth)
        FList.erase(FList.begin());
}

bool TQVDisplayZoomList::Get(std::unique_ptr<TQVAxisZoomList>& AAxisList)
{
    if (FList.empty()) {
        AAxisList.reset();
        return false;
    }
    AAxisList = std::move(FList.back());
    FList.pop_back();
    return true;
}

void TQVDisplayZoomList::RemoveAxis(const TQVDisplayAxis* AAxis)
{
    for (const auto& List : FList)
        List->Remove(AAxis);
}

} // namespace qv
