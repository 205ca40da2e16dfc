// archive_size_check.cpp: stops the build when the settings and the archive disagree on its length.
#include "installer/product_settings.h"

// The assembler holds the bytes it embeds to the same figure.
static_assert(product.archive_size == ZEPH_ARCHIVE_BYTES,
              "archive_size in product_settings.h is not the length of the plug-in archive");
