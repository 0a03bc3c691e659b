// Media types: which are taken, their copies, and a list of at most one of them.
#pragma once
#include "core/platform.h"
#define NO_DSHOW_STRSAFE // <dshow.h> would poison strcpy and others
#include <dshow.h>

#include "extractor/wave_format.h"

int AcceptsMediaType(const AM_MEDIA_TYPE* type, SoundFormatRecord* format);
int SameMediaType(const AM_MEDIA_TYPE& a, const AM_MEDIA_TYPE& b);
// Whether the type is one of those that `pattern`, which may leave out parts or be null, allows.
int FitsMediaType(const AM_MEDIA_TYPE& type, const AM_MEDIA_TYPE* pattern);
HRESULT CopyMediaType(AM_MEDIA_TYPE* to, const AM_MEDIA_TYPE& from);
void FreeMediaType(AM_MEDIA_TYPE* type); // what it points to; it is empty then
// Of the one type, or of none.
HRESULT ListMediaTypes(const AM_MEDIA_TYPE* type, IEnumMediaTypes** list);
