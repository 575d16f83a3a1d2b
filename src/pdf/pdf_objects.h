#pragma once
// The PDF values: MyPDFObj and its classes, their lists and maps.

#include "pdf/object_collections.h"
#include "pdf/pdf_array.h"
#include "pdf/pdf_dictionary.h"
#include "pdf/pdf_obj.h"
#include "pdf/pdf_scalars.h"
#include "pdf/pdf_stream.h"
