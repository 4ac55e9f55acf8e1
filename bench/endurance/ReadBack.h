#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

/// Looks at what a program that was killed left behind, and knows what it left before: a list or
/// favourites that are older than those are lost ones.
class ReadBack
{
public:
    /// `folder` is the program's, `saved` that of its images and movies.
    ReadBack(const QString& folder, const QString& saved);

    /// Writes the list of the first run.
    void prepare();

    /// Takes the keys of pref.ini from now on as those that it has to have.
    void learnPreferences();

    /// Everything that is not whole, each a line for a person; empty where all is. `run` is the
    /// number of the run that ended.
    QStringList faults(int run);

    /// The numbers of the first and last camera that were read last.
    int firstCamera() const { return m_first; }
    int lastCamera() const { return m_last; }

    /// Files in both folders that are none of those that the program is for.
    int leftOver() const;

    /// How many lists, preferences, images and movies were read back whole.
    int lists = 0;
    int preferences = 0;
    int images = 0;
    int movies = 0;
    /// Of the preferences those that the run itself wrote.
    int newPreferences = 0;

private:
    QString listFault();
    QString preferencesFault(int run);
    QString imageFault(const QString& name);
    QString movieFault();
    QSet<QByteArray> preferenceKeys() const;

    QString m_folder;
    QString m_saved;
    int m_first = 1;
    int m_last = 0;
    int m_favouritesRun = 0;
    QSet<QByteArray> m_keys;
};
