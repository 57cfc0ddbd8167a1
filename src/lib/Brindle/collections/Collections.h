#pragma once

// Everything that a user of collections needs.
#include <Brindle/collections/AssociatesCollection.h>
#include <Brindle/collections/Collection.h>
#include <Brindle/collections/FlattenCollection.h>
#include <Brindle/collections/ForEach.h>
#include <Brindle/collections/ListCollection.h>
#include <Brindle/collections/ReduceCollection.h>
#include <Brindle/collections/Strings.h>
#include <Brindle/collections/SubsetCollection.h>
