#pragma once

#include <QList>
#include <QObject>
#include <QString>

/// A camera that is opened straight from the menu.
struct Favourite
{
    QString name;
    /// The whole camera key, extra header included.
    QString key;
};

/// The user's favourites, in menu order. Entry 0 always exists: while no favourite uses it, it is
/// empty and hidden. Menus and windows mirror this object.
class Favourites : public QObject
{
    Q_OBJECT

public:
    explicit Favourites(QObject* parent = nullptr);

    const QList<Favourite>& entries() const { return m_entries; }

    /// Entry 0 alone can be hidden.
    bool isHidden(qsizetype index) const { return index == 0 && m_firstHidden; }

    /// Takes what the section FAVORITES of the ini file at `path` holds. A COUNT that is no
    /// number, or is greater than what the file holds, makes no entries out of nothing.
    void load(const QString& path);

    /// Writes the entries that have both a name and a key, without gaps, and their COUNT last.
    /// Pairs of an earlier, longer list stay in the file; COUNT alone bounds what is read back.
    void save(const QString& path) const;

signals:
    void Changed();

private:
    QList<Favourite> m_entries{{}};
    bool m_firstHidden = true;
};
