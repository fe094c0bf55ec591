#pragma once

#include <CMNodesWorker.h>

class TestItemsNode;
class TestPlayLogic;

// A module built only for the tests of the host: a node with rows, a play
// logic at <prefix>:/playlogic and a few commands that show where and how
// requests are handled.
class TestModuleWorker : public CMNodesWorker
{
    Q_OBJECT
public:
    explicit TestModuleWorker(const QHash<QString, QVariant>& parameters);

    void setDataRequest(const CMSetDataRequest& request) override;

private:
    void handle(const CMSetDataRequest& request);
    void holdStartWhileAsked();

    TestItemsNode* m_items = nullptr;
    TestPlayLogic* m_playLogic = nullptr;
    int m_counted = 0;
};
