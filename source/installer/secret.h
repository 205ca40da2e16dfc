// secret.h: letting go of a text that nobody may find again.
#pragma once

#include <cstdlib>
#include <cstring>

// Overwrites and frees *text, and sets it to null. Null is ignored.
inline void wipe_and_free(char** text) {
    if (*text != nullptr) {
        explicit_bzero(*text, std::strlen(*text));
        std::free(*text);
        *text = nullptr;
    }
}
