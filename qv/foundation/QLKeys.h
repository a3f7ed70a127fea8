#pragma once
// The keys that displays and their hosts react to, as the codes KeyDown and KeyUp carry. A
// platform maps its own key codes onto these; a printable character arrives as its
// character code (upper-case letters for letter keys, '0' to '9', '+', '-', ...).

#include <cstdint>

namespace qv {

enum TQLKey : uint16_t {
    vkNone = 0x00,
    vkBack = 0x08,
    vkTab = 0x09,
    vkReturn = 0x0D,
    vkEscape = 0x1B,
    vkSpace = 0x20,
    vkPrior = 0x21,
    vkNext = 0x22,
    vkEnd = 0x23,
    vkHome = 0x24,
    vkLeft = 0x25,
    vkUp = 0x26,
    vkRight = 0x27,
    vkDown = 0x28,
    vkInsert = 0x2D,
    vkDelete = 0x2E
};

} // namespace qv
