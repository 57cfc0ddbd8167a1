#pragma once

// Everything that a user of collections needs.
#include <Brindle/AssociatesCollection.h>
#include <Brindle/Collection.h>
#include <Brindle/FlattenCollection.h>
#include <Brindle/ForEach.h>
#include <Brindle/ListCollection.h>
#include <Brindle/ReduceCollection.h>
#include <Brindle/Strings.h>
#include <Brindle/SubsetCollection.h>
