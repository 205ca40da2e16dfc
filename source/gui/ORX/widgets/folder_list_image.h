// folder_list_image.h: the browser's list as a pixmap on the server, drawn where it is looked at.
//
// A list of 4,096 entries is tens of millions of device pixels, and a person sees a few rows of it.
// So the pixmap has the whole size and is drawn in bands, each when it first comes into view. A
// band has the very pixels that scaling the whole list would give it. With the dialog's mutex held.
#pragma once

#include <cstdint>

struct FolderDialog;

// Makes the pixmap for the table as it stands and sets the list's device size. When the server
// refuses one of that height the list is cut shorter, as it is at 32,767 pixels; when it refuses
// even one of the view's height there is no pixmap and the size is 0.
void folder_list_image_make(FolderDialog* dialog);

// Frees the pixmap; the list has no size then.
void folder_list_image_free(FolderDialog* dialog);

// Sees to it that device rows first to first + rows of the list are in the pixmap.
void folder_list_image_draw(FolderDialog* dialog, std::int32_t first, std::int32_t rows);

// Forgets what was drawn: the rows have changed their looks.
void folder_list_image_invalidate(FolderDialog* dialog);
