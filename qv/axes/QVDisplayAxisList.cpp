#include "qv/axes/QVDisplayAxisList.h"

#include "qv/foundation/QLCollection.h"

#include <algorithm>

namespace qv {

TQVDisplayAxis* TQVDisplayAxisList::GetItem(int32_t AIndex) const
{
    if (AIndex < 0 || AIndex >= GetCount())
        throw EQLListError(AIndex);
    return FItems[static_cast<size_t>(AIndex)];
}

int32_t TQVDisplayAxisList::IndexOf(const TQVDisplayAxis* AAxis) const
{
    auto It = std::find(FItems.begin(), FItems.end(), AAxis);
    return It == FItems.end() ? -1 : static_cast<int32_t>(It - FItems.begin());
}

void TQVDisplayAxisList::Add(TQVDisplayAxis* AAxis)
{
    if (AAxis && IndexOf(AAxis) < 0)
        FItems.push_back(AAxis);
}

void TQVDisplayAxisList::Remove(const TQVDisplayAxis* AAxis)
{
    auto It = std::find(FItems.begin(), FItems.end(), AAxis);
    if (It != FItems.end())
        FItems.erase(It);
}

} // namespace qv
