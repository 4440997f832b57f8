#ifndef OBJECTEDIT_H
#define OBJECTEDIT_H

#include "DriveObject.h"

#include <QVector>

class Console;

/*!
    What a user asks for: a text to be the value of the object of that name.
*/
struct Setting
{
    QString name;
    QString text;

    //! Returns the setting that "NAME=TEXT" asks for, or nothing. The first "=" parts the two.
    Q_REQUIRED_RESULT static std::optional<Setting> fromText(const QString &text);
};

/*!
    What came of a setting: the value before and after. Equal values are no change, and the object
    keeps the value it had, bytes behind the end of a text included.
*/
struct Edit
{
    int object; //!< position in the list
    CVariant before;
    CVariant after;

    bool isChange() const { return before != after; }
};

/*!
    Carries out \a settings on \a objects, in their order, and returns what came of each. A setting
    that cannot be carried out is reported to \a console.
*/
QVector<Edit> applySettings(const QVector<Setting> &settings, QVector<DriveObject> &objects,
                            Console &console);

#endif // OBJECTEDIT_H
