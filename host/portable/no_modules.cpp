// Where nothing can be loaded while a program runs, as in WebAssembly: no module is ever found.
#include "host/config.h"
#include "host/library.h"

TvnPlatform::TvnStringT<wchar_t> TvnConfig::INIGetFiltersDir() { return {}; }

TvnUtils::TvnLibrary::TvnLibrary(const TvnPlatform::TvnStringT<wchar_t>& /*name*/) {}
TvnUtils::TvnLibrary::~TvnLibrary() = default;

bool TvnUtils::TvnLibrary::Load() { return false; }
bool TvnUtils::TvnLibrary::IsLoaded() const { return loaded_ != nullptr; }
void* TvnUtils::TvnLibrary::GetSymbol(const char* /*name*/) const { return nullptr; }
bool TvnUtils::TvnLibrary::Unload() { return false; }
