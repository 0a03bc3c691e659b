// See compound_win.h. The bytes are offered to the platform as an ILockBytes of our own: the one
// that the platform has allocates anew at each growth, by 512 bytes a time.
#include "cdinfo/compound_win.h"

#include <algorithm>
#include <cstring>
#include <new>

#include <objbase.h>

constexpr DWORD kWriteMode = STGM_READWRITE | STGM_SHARE_EXCLUSIVE;
constexpr DWORD kCreateMode = STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE;
constexpr DWORD kPutMode = STGM_CREATE | STGM_WRITE | STGM_SHARE_EXCLUSIVE;
constexpr ULONGLONG kMaxImage = 256u << 20;

// Used by one thread; lives until the storage and the CompoundFile have released it.
struct MemoryBytes final : ILockBytes {
    LONG references = 1;
    std::vector<uint8_t> image;

    virtual ~MemoryBytes() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
        const bool known = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_ILockBytes);
        *object = known ? this : nullptr;
        if (!known) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references); }
    ULONG STDMETHODCALLTYPE Release() override {
        const LONG left = --references;
        if (!left) delete this;
        return static_cast<ULONG>(left);
    }
    HRESULT STDMETHODCALLTYPE ReadAt(ULARGE_INTEGER offset, void* to, ULONG count,
                                     ULONG* read) override {
        const size_t at = static_cast<size_t>(std::min<ULONGLONG>(offset.QuadPart, image.size()));
        const size_t part = std::min<size_t>(count, image.size() - at);
        if (part) std::memcpy(to, image.data() + at, part);
        if (read) *read = static_cast<ULONG>(part);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE WriteAt(ULARGE_INTEGER offset, const void* from, ULONG count,
                                      ULONG* written) override {
        if (written) *written = 0;
        if (offset.QuadPart > kMaxImage) return STG_E_MEDIUMFULL;
        const ULONGLONG end = offset.QuadPart + count;
        if (end > image.size()) {
            ULARGE_INTEGER size;
            size.QuadPart = end;
            const HRESULT grown = SetSize(size);
            if (FAILED(grown)) return grown;
        }
        if (count) std::memcpy(image.data() + static_cast<size_t>(offset.QuadPart), from, count);
        if (written) *written = count;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Flush() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE SetSize(ULARGE_INTEGER size) override {
        if (size.QuadPart > kMaxImage) return STG_E_MEDIUMFULL;
        try {
            image.resize(static_cast<size_t>(size.QuadPart));
        } catch (const std::bad_alloc&) {
            return STG_E_MEDIUMFULL;
        }
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override {
        return STG_E_INVALIDFUNCTION;
    }
    HRESULT STDMETHODCALLTYPE UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override {
        return STG_E_INVALIDFUNCTION;
    }
    HRESULT STDMETHODCALLTYPE Stat(STATSTG* stat, DWORD) override {
        std::memset(stat, 0, sizeof *stat);
        stat->type = STGTY_LOCKBYTES;
        stat->cbSize.QuadPart = image.size();
        stat->grfMode = kWriteMode;
        return S_OK;
    }
};

static MemoryBytes* BytesOf(const CompoundFile& file) {
    return static_cast<MemoryBytes*>(file.bytes);
}

int OpenCompound(std::vector<uint8_t>&& image, CompoundFile* file) {
    *file = {};
    MemoryBytes* bytes = new (std::nothrow) MemoryBytes;
    if (!bytes) return 0;
    bytes->image = std::move(image);
    file->bytes = bytes;
    return SUCCEEDED(
        StgOpenStorageOnILockBytes(bytes, nullptr, kWriteMode, nullptr, 0, &file->root));
}

int CreateCompound(CompoundFile* file) {
    *file = {};
    file->bytes = new (std::nothrow) MemoryBytes;
    return file->bytes &&
           SUCCEEDED(StgCreateDocfileOnILockBytes(file->bytes, kCreateMode, 0, &file->root));
}

// The last release would write it too, but could not tell of a failure.
int FlushCompound(const CompoundFile& file) {
    return SUCCEEDED(file.root->Commit(STGC_DEFAULT));
}

void CloseCompound(CompoundFile* file, std::vector<uint8_t>* image) {
    if (file->root) file->root->Release();
    if (image && file->bytes) *image = std::move(BytesOf(*file)->image);
    if (file->bytes) file->bytes->Release();
    *file = {};
}

int SetCompoundClass(const CompoundFile& file, const CLSID& classId) {
    return SUCCEEDED(file.root->SetClass(classId));
}

static int PutAll(IStream* stream, std::span<const uint8_t> bytes) {
    ULONG put = 0;
    if (bytes.empty()) return 1;
    return SUCCEEDED(stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), &put)) &&
           put == bytes.size();
}

int WriteStream(const CompoundFile& file, const wchar_t* name, std::span<const uint8_t> bytes) {
    IStream* stream = nullptr;
    if (FAILED(file.root->CreateStream(name, kPutMode, 0, 0, &stream))) return 0;
    const int whole = PutAll(stream, bytes);
    stream->Release();
    return whole;
}

int RewriteStream(const CompoundFile& file, const wchar_t* name, uint32_t offset,
                  std::span<const uint8_t> bytes) {
    IStream* stream = nullptr;
    if (FAILED(file.root->OpenStream(name, nullptr, kWriteMode, 0, &stream))) return 0;
    LARGE_INTEGER start;
    start.QuadPart = offset;
    ULARGE_INTEGER end;
    end.QuadPart = offset + bytes.size();
    const int whole = SUCCEEDED(stream->Seek(start, STREAM_SEEK_SET, nullptr)) &&
                      PutAll(stream, bytes) && SUCCEEDED(stream->SetSize(end));
    stream->Release();
    return whole;
}

int RemoveStream(const CompoundFile& file, const wchar_t* name) {
    return SUCCEEDED(file.root->DestroyElement(name));
}
