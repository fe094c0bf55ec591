#pragma once

#include "CMSetDataRequest.h"
#include "VexaPlayListAddPosition.h"
#include "VexaPlayListItem.h"

#include <QHash>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include <optional>

class CMRequestGroup;
class CollectionBase;
class PlayListBase;
class PlayListManager;
class PlayListWorker;

// Carries out the module's commands: matches a set-data request's path with
// the command paths, checks the parameters in a fixed order, changes the model
// and answers the request with a success value or a user-readable error.
class Controller : public QObject
{
    Q_OBJECT

public:
    // The bookkeeping of one add-items command while its content is prepared.
    struct ReqGroupProperties
    {
        int plid = -1;
        int fromPlid = -1;
        VexaPlayListAddPosition::Enum position = VexaPlayListAddPosition::Append;
        bool flag = false;
        // True when the command copies a whole, existing source playlist.
        bool wholePlaylist = false;
        CMSetDataRequest request;
    };

    Controller(PlayListWorker* worker, PlayListManager* manager);

    // Routes and answers one request; true when its path is one of the commands.
    bool handleSetData(const CMSetDataRequest& request);

    // Answers true, or the new uid when created is given; a failure answers msg.
    void setReply(const CMSetDataRequest& request, bool ok, const QString& msg, std::optional<int> created = {});
    QString buildErrMsg(const QString& a, const QString& b, const QString& c);
    QString buildOkMsg(const QString& a, const QString& b, const QString& c);

    bool checkNonemptyString(const QString& value, const QString& field, const QString& prefix, QString& errMsg);
    bool checkPlayList(const PlayListBase* pl, const int& plid, const QString& prefix, QString& errMsg);
    bool checkPlayListId(const int& plid, const QString& prefix, QString& errMsg);

    bool plCreate(CMSetDataRequest request, QString& msg, int& uid);
    bool clCreate(CMSetDataRequest request, QString& msg, int& uid);
    bool clDelete(CMSetDataRequest request, QString& msg);
    bool plSetName(CMSetDataRequest request, QString& msg);
    bool plSetShuffle(CMSetDataRequest request, QString& msg);
    bool plSetRepeat(CMSetDataRequest request, QString& msg);
    bool plDelete(CMSetDataRequest request, QString& msg);
    bool clAddItem(CMSetDataRequest request, QString& msg);
    bool clRemoveItem(CMSetDataRequest request, QString& msg);
    bool plClearItems(CMSetDataRequest request, QString& msg);
    bool plMoveItems(CMSetDataRequest request, QString& msg);
    bool plRemoveItems(CMSetDataRequest request, QString& msg);
    bool plPlay(CMSetDataRequest request, QString& msg);

    void plAddItems(CMSetDataRequest request);
    int addItemsFromAllReplays(const ReqGroupProperties& properties, CMRequestGroup* group, QString* msg);
    int addItemsToPlaylist(PlayListBase* playlist, const QList<VexaPlayListItem>& items,
                           VexaPlayListAddPosition::Enum position, QString* msg);
    // Adds the whole source playlist to the command's target in the store; as addItemsToPlaylist.
    int addWholePlayList(const ReqGroupProperties& properties, PlayListBase* source, QString* msg);
    bool plAddExternalItems(CMSetDataRequest request, QString& msg);
    void plPrepareItems(CMSetDataRequest request);
    QVariantList preparePlaylistItems(const QStringList& paths);
    void tryStartItem(const VexaPlayListItem& item, const PlayListBase* playlist, int seqIndex);

signals:
    // Kept on purpose for observers of the commands, though nothing in the module connects them.
    void playlistCreated(const int& plid);
    void playlistDeleted(const int& plid);

public slots:
    void on_prepareItemsGroup_finished();

private:
    // The playlist plid, or null with the playlist check's text in msg and its log line.
    PlayListBase* findPlayList(int plid, const QString& prefix, QString& msg);
    // What set-shuffle or set-repeat says, in its own words, and how it applies a mode.
    struct ModeCommand
    {
        QString prefix;
        QString invalidMode;
        QString invalidModeField;
        QString done;
        const char* invalidIdLog;
        const char* invalidModeLog;
        const char* doneLog;
        int lastMode;
        void (*apply)(PlayListBase* playlist, int mode);
    };
    // set-shuffle and set-repeat: the same checks on their own texts.
    bool setPlayListMode(const ModeCommand& command, int plid, int mode, QString& msg);
    // What add-to-collection or remove-from-collection says, and how it changes a collection.
    struct MemberCommand
    {
        QString prefix;
        QString failed;
        QString done;
        const char* missingPlayListLog;
        const char* failedLog;
        const char* failedLogCollection;
        const char* doneLog;
        bool (*apply)(CollectionBase* collection, PlayListBase* playlist);
    };
    // add-to-collection and remove-from-collection alike.
    bool changeCollectionMember(const MemberCommand& command, const CMSetDataRequest& request, QString& msg);
    // The sequence number of the first of added entries just added to playlist with position "now".
    int firstAddedNow(const PlayListBase* playlist, int added) const;
    // The end of every add-items command: the source of a whole playlist goes,
    // "now" starts the first new entry, and the command is answered.
    void finishAddItems(const ReqGroupProperties& properties, int result, const QString& addMsg);
    // The target playlist plid, or null with the text that says it is gone in msg.
    PlayListBase* findAddTarget(int plid, QString* msg);
    // What an add of items reports: the count added, or that the limit was reached.
    QString addedItemsMessage(int res);

    // Kept on purpose: the worker that owns this controller, unread today.
    PlayListWorker* m_worker;
    PlayListManager* m_manager;
    QHash<CMRequestGroup*, ReqGroupProperties> m_ReqGroupPropertiesHash;
};
