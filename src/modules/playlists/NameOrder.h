#pragma once

#include <QList>
#include <QString>

// Keeps a list of named objects (anything with getName()) in the user's
// locale order as elements arrive. Equal names keep their order of arrival.
class NameOrder
{
public:
    // Inserts element before the first one whose name sorts after its own,
    // or appends it.
    template <class T>
    static void insert(QList<T*>& list, T* element)
    {
        const QString name = element->getName();
        for (int i = 0; i < list.size(); ++i) {
            if (QString::localeAwareCompare(name, list.at(i)->getName()) < 0) {
                list.insert(i, element);
                return;
            }
        }
        list.append(element);
    }
};
