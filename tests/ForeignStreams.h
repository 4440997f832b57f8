#ifndef FOREIGNSTREAMS_H
#define FOREIGNSTREAMS_H

#include <QByteArray>
#include <QDataStream>
#include <QHash>
#include <QString>
#include <QVector>

#include <random>

/*!
    Contents of a QVariant as they stand in a stream of QDataStream::Qt_5_15 and big-endian, made by
    hand: no program has to have written them.
*/
namespace ForeignStreams {

//! Returns \a value as a QDataStream writes it.
template <class T>
QByteArray written(const T &value)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << value;
    return bytes;
}

inline QByteArray number(quint32 value)
{
    return written(value);
}

//! Returns type id and null flag.
inline QByteArray head(int type)
{
    return number(static_cast<quint32>(type)) + '\0';
}

//! Returns \a bytes as a QByteArray writes them.
inline QByteArray counted(const QByteArray &bytes)
{
    return number(static_cast<quint32>(bytes.size())) + bytes;
}

//! Returns the head of a content whose type is told by its name.
inline QByteArray named(const QByteArray &name)
{
    return head(1024) + counted(name + '\0');
}

inline QByteArray repeated(const char *part, int bytes)
{
    const QByteArray one(part);
    return one.repeated(bytes / one.size());
}

//! Returns a list, or another container of that \a type, of as many \a element as fill \a bytes.
inline QByteArray filled(const QByteArray &element, int bytes, int type = 9)
{
    const int count = bytes / element.size();
    return head(type) + number(static_cast<quint32>(count)) + element.repeated(count);
}

inline QByteArray url(const QByteArray &encoded)
{
    return head(17) + counted(encoded);
}

//! Returns \a count characters, all different as far as there are.
inline QByteArray manyCharacters(int count)
{
    QString text;
    for (int i = 0; i < count; ++i)
        text += QChar(0x4E00 + i % 20000);
    return text.toUtf8();
}

//! Returns 2^16 and more keys of the same length and the same hash, whatever the seed is.
class CollidingKeys
{
public:
    CollidingKeys()
    {
        // Both ways in which Qt hashes a text go through it in order: two pieces that hash alike do
        // so wherever they stand. A piece is as long as what is hashed at a time.
        std::mt19937 random(1);
        QHash<uint, QString> pieces;
        const auto seed = static_cast<uint>(qGlobalQHashSeed());
        while (mPieces[0].isEmpty()) {
            QString piece;
            for (int i = 0; i < 4; ++i)
                piece += QChar(static_cast<ushort>(u'a' + random() % 1024));
            const QString other = pieces.value(qHash(piece, seed), piece);
            if (other != piece) {
                mPieces[0] = other;
                mPieces[1] = piece;
            }
            pieces.insert(qHash(piece, seed), piece);
        }
    }

    QString key(int index) const
    {
        QString text;
        for (int bit = 0; bit < 16; ++bit)
            text += mPieces[index >> bit & 1];
        return text;
    }

private:
    QString mPieces[2];
};

//! Returns a hash of \a count entries whose keys collide.
inline QByteArray collidingHash(int count)
{
    static const CollidingKeys keys;
    QByteArray bytes = head(28) + number(static_cast<quint32>(count));
    for (int i = 0; i < count; ++i)
        bytes += written(keys.key(i)) + head(0);
    return bytes;
}

//! Returns a date-time of Qt_5_2 and later up to its time spec.
inline QByteArray dateTime(int spec)
{
    return head(16) + QByteArray::fromHex("0000000000257c920038c340") + static_cast<char>(spec);
}

inline QByteArray keys(int bytes)
{
    QByteArray all;
    for (int i = 0; all.size() < bytes; ++i)
        all += '"' + QByteArray::number(i) + "\":1,";
    return all;
}

struct Kind
{
    const char *name;
    QByteArray (*make)(int bytes); //!< Returns such content, of about \a bytes.
};

//! Kinds of content, of which each may be as long as it likes.
inline QVector<Kind> kinds()
{
    return {
        {"text", [](int n) { return head(10) + counted(QByteArray(n, 'a')); }},
        {"byte array", [](int n) { return head(12) + counted(QByteArray(n, 'a')); }},
        {"bits",
         [](int n) {
             return head(13) + number(static_cast<quint32>(8 * n)) + QByteArray(n, '\x55');
         }},
        {"texts", [](int n) { return filled(number(2) + QByteArray(2, 'a'), n, 11); }},
        {"texts, null", [](int n) { return filled(number(0xFFFFFFFF), n, 11); }},
        {"byte arrays", [](int n) { return filled(number(1) + 'a', n, 49); }},
        {"list of nothing", [](int n) { return filled(head(0), n); }},
        {"list of integers", [](int n) { return filled(head(2) + number(7), n); }},
        {"list of rectangles", [](int n) { return filled(head(19) + QByteArray(16, 'a'), n); }},
        {"list of lists", [](int n) { return filled(head(9) + number(1) + head(0), n); }},
        {"list of maps",
         [](int n) { return filled(head(8) + number(1) + number(0) + head(0), n); }},
        {"list of hashes",
         [](int n) { return filled(head(28) + number(1) + number(0) + head(0), n); }},
        {"list of QVariant", [](int n) { return filled(head(41) + head(0), n); }},
        {"list of empty QUrl", [](int n) { return filled(url(""), n); }},
        {"list of QLocale",
         [](int n) { return filled(head(18) + written(QStringLiteral("de_CH")), n); }},
        {"list of QRegularExpression",
         [](int n) { return filled(head(44) + number(0) + number(0), n); }},
        {"list of QRegExp",
         [](int n) { return filled(head(27) + number(2) + QByteArray(5, '\0'), n); }},
        {"list of QEasingCurve", [](int n) { return filled(head(29) + QByteArray(10, '\0'), n); }},
        {"list of fixed strings",
         [](int n) { return filled(named("CString32") + QByteArray(64, 'a'), n); }},
        {"list of date-times", [](int n) { return filled(dateTime(Qt::UTC), n); }},
        {"list of date-times in a zone",
         [](int n) {
             return filled(dateTime(Qt::TimeZone) + written(QStringLiteral("Europe/Zurich")), n);
         }},
        {"map, equal keys", [](int n) { return filled(number(0) + head(0), n, 8); }},
        {"hash, equal keys", [](int n) { return filled(number(0) + head(0), n, 28); }},
        {"hash, colliding keys", [](int n) { return collidingHash(n / 137); }},
        {"QRegExp",
         [](int n) { return head(27) + counted(QByteArray(n, '(')) + QByteArray(3, '\0'); }},
        {"QRegularExpression",
         [](int n) { return head(44) + counted(QByteArray(n, '(')) + number(0); }},
        {"QEasingCurve",
         [](int n) {
             return head(29) + '\x2d' + QByteArray(8, '\0') + '\1' + QByteArray(24, '\0')
                 + number(static_cast<quint32>(n / 16)) + QByteArray(n / 16 * 16, '\0') + number(0);
         }},
        {"QLocale", [](int n) { return head(18) + counted(QByteArray(n, 'a')); }},
        {"QUrl, host of one letter",
         [](int n) { return url("http://" + repeated("\xC3\xA4", n) + "/"); }},
        {"QUrl, host of many letters",
         [](int n) { return url("http://" + manyCharacters(n / 3) + "/"); }},
        {"QUrl, host of many letters, encoded",
         [](int n) { return url("http://" + manyCharacters(n / 9).toPercentEncoding() + "/"); }},
        {"QUrl, plain host", [](int n) { return url("http://" + repeated("a.", n) + "/"); }},
        {"QUrl, path of many letters",
         [](int n) { return url("http://a/" + manyCharacters(n / 3)); }},
        {"QUrl, query", [](int n) { return url("http://a/?" + repeated("a=%C3%A4&", n)); }},
        {"list of QUrl of many letters",
         [](int n) { return filled(url("http://" + manyCharacters(80) + "/"), n); }},
        {"JSON, lists in a list",
         [](int n) { return head(48) + counted("[" + repeated("[1],", n) + "1]"); }},
        {"JSON, objects in a list",
         [](int n) { return head(48) + counted("[" + repeated("{\"\":1},", n) + "1]"); }},
        {"JSON, open brackets", [](int n) { return head(47) + counted(QByteArray(n, '[')); }},
        {"JSON, equal keys",
         [](int n) { return head(46) + counted("{" + repeated("\"a\":1,", n) + "\"b\":1}"); }},
        {"JSON, keys", [](int n) { return head(46) + counted("{" + keys(n) + "\"b\":1}"); }},
        {"JSON, text", [](int n) { return head(45) + '\3' + counted(QByteArray(n, 'a')); }},
        {"CBOR", [](int n) { return head(53) + counted(QByteArray(n, '\x81')); }},
        {"CBOR, arrays that claim 2^32",
         [](int n) { return head(54) + counted(repeated("\x9A\xFF\xFF\xFF\xFF", n)); }},
        {"CBOR, maps that claim 2^26",
         [](int n) { return head(55) + counted(repeated("\xBA\x03\xFF\xFF\xFF", n)); }},
        {"type by a long name",
         [](int n) {
             return named(repeated("QList<", 3 * n / 4) + "int" + repeated(" >", n / 4));
         }},
        {"type by a long unknown name", [](int n) { return named(QByteArray(n, 'a')); }},
        {"lists in lists", [](int n) { return (head(9) + number(1)).repeated(n / 9); }},
    };
}

} // namespace ForeignStreams

#endif // FOREIGNSTREAMS_H
