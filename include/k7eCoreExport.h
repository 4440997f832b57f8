#ifndef K7ECOREEXPORT_H
#define K7ECOREEXPORT_H

#include <QtGlobal>

/*!
    \def K7ECORE_EXPORT
    Marks what libk7eCore exports; everything else in the library is hidden.
*/
#if defined(K7ECORE_LIBRARY)
#define K7ECORE_EXPORT Q_DECL_EXPORT
#else
#define K7ECORE_EXPORT Q_DECL_IMPORT
#endif

#endif // K7ECOREEXPORT_H
