#pragma once
// The index error of element lists that name the index in the words "Index out of range : ".

#include <cstdint>
#include <stdexcept>
#include <string>

namespace qv {

class EListError : public std::out_of_range {
public:
    explicit EListError(int32_t AIndex)
        : std::out_of_range("Index out of range : " + std::to_string(AIndex)), FIndex(AIndex)
    {}
    int32_t GetIndex() const { return FIndex; }

private:
    int32_t FIndex;
};

} // namespace qv
