#include "CMError.h"

CMError::CMError(const QString& name, const QString& title, const TrString& message)
{
    setName(name);
    setTitle(title);
    setMessage(message);
}
