#pragma once

#include "ApiRequest.h"
#include "ApiResult.h"
#include "IdempotencyKeys.h"

#include <QAtomicInt>

class CMRootWorker;

// The content calls: rows of a list, data of a value or node, and set-data
// commands. Each hands the request to the root and answers from its reply.
class ContentApi
{
public:
    // What one request may cost. A longer range of rows is cut to
    // MaxPageRows, not refused; more roles, cells or answer bytes are
    // refused with a 400 that names the limit. "*" weighs as every role a
    // row can carry.
    static constexpr int MaxPageRows = 10000;
    static constexpr int MaxRoles = 64;
    static constexpr int StarRoles = 12;
    static constexpr qint64 MaxCells = 100000;
    static constexpr int MaxAnswerBytes = 16 * 1024 * 1024;

    explicit ContentApi(CMRootWorker* root);

    // GET /api/v1/rows?path=P&roles=R1,R2&from=A&to=B
    ApiResult rows(const ApiRequest& request);
    // GET /api/v1/data?path=P&roles=R1,R2
    ApiResult data(const ApiRequest& request);
    // POST /api/v1/data {"path": P, "value": V}, with an optional
    // Idempotency-Key header that makes sending it again safe.
    ApiResult setData(const ApiRequest& request);

private:
    CMRootWorker* m_root;
    QAtomicInt m_requestIndex;
    IdempotencyKeys m_keys;
};
