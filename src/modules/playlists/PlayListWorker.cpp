#include "PlayListWorker.h"

#include "Controller.h"
#include "Database.h"
#include "PlayListManager.h"
#include "PlayListPlayLogic.h"
#include "playlistUI/PlayListUI.h"
#include "PlayListsLog.h"

#include "CMRootWorker.h"
#include "CMValueItem.h"
#include "CMVoidReply.h"
#include "Language.h"
#include "VexaConnect.h"
#include "VexaPaths.h"

#include <QDir>

namespace {

// Installs the translation catalogues built into the module: ":/playlists/i18n/playlists_<language>.qm".
void installCatalogues()
{
    const QDir dir(QStringLiteral(":/playlists/i18n"));
    for (const QString& file : dir.entryList({QStringLiteral("playlists_*.qm")}, QDir::Files)) {
        const QString language = file.mid(int(qstrlen("playlists_")), file.size() - int(qstrlen("playlists_.qm")));
        Language::installCatalogue(language, dir.filePath(file));
    }
}

} // namespace

PlayListWorker::PlayListWorker(const QHash<QString, QVariant>& parameters)
    : CMNodesWorker(parameters, QStringLiteral("PlayLists"))
{
    Q_INIT_RESOURCE(playlists_translations);
    installCatalogues();

    const int itemsLimit = VexaValue(CMRoot()->getValue(VexaPlayListsSettingsDataBaseItemsLimitPath()).toHash()).i32_();
    const bool vacuumFlag = VexaValue(CMRoot()->getValue(VexaPlayListSettingsDataBaseVacuumPath()).toHash()).bool_();

    // The vacuum signal is connected only now, so that a vacuum at start-up
    // does not clear the persisted flag: only a later vacuum does.
    m_database = new Database(itemsLimit, vacuumFlag);
    vexaConnect(m_database, "2vacuumNeeded(bool)", this, "1on_databaseVacuum_needed(bool)", Qt::AutoConnection);
    m_manager = new PlayListManager(m_database);
    m_ui = new PlayListUI(this, nodes(), subscribe(), m_manager);
    m_controller = new Controller(this, m_manager);
    m_playLogic = new PlayListPlayLogic(this, m_manager, nullptr);
    vexaConnect(this, "2setDataReceived(CMSetDataRequest)", this, "1on_setDataRequest(CMSetDataRequest)",
                Qt::AutoConnection);
    m_powerManagerTargetItem = new CMValueItem(this, VexaPowerManagerTargetPath(), this,
                                               "1on_powerManagerTargetItem_changed(VexaValue, VexaValue)",
                                               Qt::AutoConnection);
}

void PlayListWorker::setDataRequest(const CMSetDataRequest& request)
{
    emit setDataReceived(request);
}

void PlayListWorker::on_setDataRequest(CMSetDataRequest request)
{
    VEXA_LOG_ENTER(TRACE, PlayListsLog::logger(), "routing");
    if (!m_controller->handleSetData(request))
        CMNodesWorker::setDataRequest(request);
}

void PlayListWorker::on_powerManagerTargetItem_changed(VexaValue newValue, VexaValue oldValue)
{
    VEXA_LOG_ENTER(TRACE, PlayListsLog::logger(), "newValue=" << newValue << " oldValue=" << oldValue);
    if (oldValue.powerTarget().target() == 1 && newValue.powerTarget().target() == 2)
        m_database->vacuum();
}

void PlayListWorker::on_databaseVacuum_needed(bool need)
{
    VexaValue value;
    value.setBool_(need);
    // Nobody waits for this write: a lost write only means one vacuum more or less.
    CMVoidReply reply;
    CMRoot()->setValue(VexaPlayListSettingsDataBaseVacuumPath(), value, reply);
}
