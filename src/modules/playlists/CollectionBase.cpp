#include "CollectionBase.h"

CollectionBase::CollectionBase()
    : QObject(nullptr)
{
}

CollectionBase::~CollectionBase() = default;
