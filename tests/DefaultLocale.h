#ifndef DEFAULTLOCALE_H
#define DEFAULTLOCALE_H

#include <QLocale>

//! Makes a locale the default one while it lives.
class DefaultLocale
{
public:
    explicit DefaultLocale(const QString &name) { QLocale::setDefault(QLocale(name)); }
    ~DefaultLocale() { QLocale::setDefault(mBefore); }

private:
    Q_DISABLE_COPY(DefaultLocale)

    const QLocale mBefore;
};

#endif // DEFAULTLOCALE_H
