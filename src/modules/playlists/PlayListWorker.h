#pragma once

#include "CMNodesWorker.h"
#include "CMSetDataRequest.h"
#include "VexaValue.h"

class CMValueItem;
class Controller;
class Database;
class PlayListManager;
class PlayListPlayLogic;
class PlayListUI;

// The module's worker: it reads the module's settings, builds and owns the
// store, the model, the browse tree, the command controller and the play
// logic, moves every set-data request
// onto its own thread, and vacuums the store when the power manager goes from
// target 1 to target 2.
class PlayListWorker : public CMNodesWorker
{
    Q_OBJECT

public:
    explicit PlayListWorker(const QHash<QString, QVariant>& parameters);

    // Re-emits the request, so that it is handled on this worker's thread.
    void setDataRequest(const CMSetDataRequest& request) override;

signals:
    void setDataReceived(CMSetDataRequest request);

public slots:
    void on_setDataRequest(CMSetDataRequest request);
    void on_powerManagerTargetItem_changed(VexaValue newValue, VexaValue oldValue);
    void on_databaseVacuum_needed(bool need);

private:
    // Parts that live as long as the process: nothing here deletes them.
    Controller* m_controller = nullptr;
    Database* m_database = nullptr;
    PlayListManager* m_manager = nullptr;
    PlayListUI* m_ui = nullptr;
    PlayListPlayLogic* m_playLogic = nullptr;
    CMValueItem* m_powerManagerTargetItem = nullptr;
};
