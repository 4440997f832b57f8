#ifndef TEXTSETS_H
#define TEXTSETS_H

#include <QString>

//! Calls \a check with every text of up to \a length units of \a alphabet until it returns false, and
//! returns whether it never did.
template <class Check>
bool forAllTexts(const QString &alphabet, int length, Check check, const QString &text = QString())
{
    if (!check(text))
        return false;
    if (text.size() == length)
        return true;
    for (const QChar unit : alphabet) {
        if (!forAllTexts(alphabet, length, check, text + unit))
            return false;
    }
    return true;
}

#endif // TEXTSETS_H
