#ifndef TEXTTABLE_H
#define TEXTTABLE_H

#include <QString>
#include <QStringList>
#include <QVector>

class QTextStream;

/*!
    A table for the terminal: a line with the titles and one line for each row, the columns aligned
    by what the characters take on the screen. Two blanks part the columns; no line ends in blanks.
*/
class TextTable
{
public:
    enum class Align { Left, Right };

    struct Column
    {
        QString title;
        Align align = Align::Left;
        int limit = 0; //!< longer cells are cut to this width, "..." included; 0: none is cut
    };

    explicit TextTable(const QVector<Column> &columns);

    //! Adds a row of as many \a cells as there are columns.
    void addRow(const QStringList &cells);
    void print(QTextStream &out) const;

private:
    void add(QStringList cells);

    QVector<Column> mColumns;
    QVector<int> mWidths;
    QVector<QStringList> mRows; // the titles are the first
};

#endif // TEXTTABLE_H
