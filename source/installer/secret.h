// secret.h: a text that is to be found nowhere once it is let go of.
#pragma once

// A copy of text in memory of its own, kept out of the swap space where the person's limit of
// locked memory allows that. Null without memory. For secret_free.
[[nodiscard]] char* secret_copy(const char* text);

// Overwrites and frees *secret, and sets it to null. Null is ignored.
void secret_free(char** secret);
