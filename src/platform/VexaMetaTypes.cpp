#include "CMError.h"
#include "CMGetRowsRequest.h"
#include "CMPath.h"
#include "CMSetDataRequest.h"
#include "VexaPlayListItem.h"
#include "VexaRoles.h"
#include "VexaValue.h"

#include <QList>
#include <QMetaType>

namespace {

// Queued connections between threads carry these types by name.
void registerVexaMetaTypes()
{
    qRegisterMetaType<CMPath>("CMPath");
    qRegisterMetaType<VexaValue>("VexaValue");
    qRegisterMetaType<VexaRoles>("VexaRoles");
    qRegisterMetaType<CMError>("CMError");
    qRegisterMetaType<CMSetDataRequest>("CMSetDataRequest");
    qRegisterMetaType<CMGetRowsRequest>("CMGetRowsRequest");
    qRegisterMetaType<VexaPlayListItem>("VexaPlayListItem");
    qRegisterMetaType<QList<int>>("QList<int>");
}

} // namespace

Q_CONSTRUCTOR_FUNCTION(registerVexaMetaTypes)
