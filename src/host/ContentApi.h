#pragma once

#include "ApiRequest.h"
#include "ApiResult.h"

#include <QAtomicInt>

class CMRootWorker;

// The content calls: rows of a list, data of a value or node, and set-data
// commands. Each hands the request to the root and answers from its reply.
class ContentApi
{
public:
    // The most rows one page carries: a longer range is cut, not refused.
    static constexpr int MaxPageRows = 10000;

    explicit ContentApi(CMRootWorker* root);

    // GET /api/v1/rows?path=P&roles=R1,R2&from=A&to=B
    ApiResult rows(const ApiRequest& request);
    // GET /api/v1/data?path=P&roles=R1,R2
    ApiResult data(const ApiRequest& request);
    // POST /api/v1/data {"path": P, "value": V}
    ApiResult setData(const ApiRequest& request);

private:
    CMRootWorker* m_root;
    QAtomicInt m_requestIndex;
};
