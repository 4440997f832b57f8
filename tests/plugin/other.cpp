#include <qglobal.h>

// Lies where an unloaded library has lain. There are several sizes of it, since a gap is filled with
// what fits in, and nothing in it is code.
extern "C" Q_DECL_EXPORT unsigned char otherBytes[K7E_SIZE];
unsigned char otherBytes[K7E_SIZE] = {1};
