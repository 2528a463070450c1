// The CMPI C interface, version 2.1: the structures and function tables by which a provider and an object
// manager call each other. Every offset is asserted where its table stands, since both sides are built
// apart.
//
// Objects that the broker's `new...` functions make belong to the current call and are gone when it returns;
// what `clone` made lives until its own `release`. Property lists are null-terminated arrays of C strings,
// and a null list means every property. Slots past the version that a table declares may be missing or null.
#pragma once

#include "cmpi/broker.h"
#include "cmpi/objects.h"
#include "cmpi/providers.h"
#include "cmpi/queries.h"
#include "cmpi/values.h"

#undef CMPI_AT
