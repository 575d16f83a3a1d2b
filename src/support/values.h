#pragma once
// The plain values: String, MutableString, Number, Data, Date, Array, Dictionary, Object, Value.

#include "support/exception.h"
#include "support/values_collections.h"
#include "support/values_plain.h"
#include "support/values_string.h"
