#include "PlayListBase.h"

PlayListBase::PlayListBase()
    : QObject(nullptr)
{
}

PlayListBase::~PlayListBase() = default;
