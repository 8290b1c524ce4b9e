// Unloading the library with attachments outstanding: this program isn't linked to it.
#include <filesystem>

#include <gtest/gtest.h>

#include "linkdb.h"
#include "linkdb_image.h"
#include "platform/process.h"
#include "temp_folder.h"

namespace {

// The library loaded by hand. Member functions are plain functions with `this` in front.
class Library {
    std::filesystem::path m_path;
    void *m_module;

    template <class Function, class... Arguments>
    auto Call(char const *name, Arguments... arguments) {
        void *const symbol = FindSymbol(m_module, name);
        EXPECT_NE(symbol, nullptr) << name;
        return reinterpret_cast<Function *>(symbol)(arguments...);
    }

public:
    Library() : m_path(std::filesystem::path(ProgramPath()).replace_filename(LibraryFileName())) {
        m_module = LoadModule(m_path.string());
        EXPECT_NE(m_module, nullptr) << m_path;
    }
    ~Library() { Unload(); }
    Library(Library const &) = delete;
    Library &operator=(Library const &) = delete;

    bool Loaded() const { return IsModuleLoaded(m_path.string()); }
    void Unload() {
        if (m_module)
            UnloadModule(m_module);
        m_module = nullptr;
    }
    CQVUDatabase *Attach(TempFolder const &folder) {
        return Call<CQVUDatabase *(char const *)>("AttachDatabase", folder.Directory().c_str());
    }
    unsigned long AddRef(CQVUDatabase *database) {
        return Call<unsigned long(CQVUDatabase *)>("_ZN12CQVUDatabase6AddRefEv", database);
    }
    unsigned long Release(CQVUDatabase *database) {
        return Call<unsigned long(CQVUDatabase *)>("_ZN12CQVUDatabase7ReleaseEv", database);
    }
    void SetSaveFlag(CQVUDatabase *database, int save) {
        Call<void(CQVUDatabase *, int)>("_ZN12CQVUDatabase11SetSaveFlagEi", database, save);
    }
    CQVUObject *Add(CQVUDatabase *database, char const *name, int persistent) {
        return Call<CQVUObject *(CQVUDatabase *, char const *, unsigned long, unsigned long,
                                 unsigned long, void *, int)>(
            "_ZN12CQVUDatabase9AddObjectEPKcmmmPvi", database, name, OBJ_FILE, 0, 0, nullptr,
            persistent);
    }
};

} // namespace

TEST(Unload, Attachments_outstanding_are_written_if_something_changed) {
    TempFolder folder;
    Library library;
    CQVUDatabase *const database = library.Attach(folder);
    EXPECT_EQ(library.AddRef(database), 2u);
    EXPECT_EQ(library.Attach(folder), database);
    library.Add(database, "kept", 1);
    EXPECT_FALSE(std::filesystem::exists(folder.DatabaseFile()));
    library.Unload();
    std::optional<image::File> const file = image::Read(ReadBytes(folder.DatabaseFile()));
    ASSERT_TRUE(file.has_value());
    EXPECT_EQ(file->objects.at(1).name, "kept");
}

TEST(Unload, The_library_is_gone_afterwards_and_starts_detached_when_it_comes_again) {
    TempFolder first, second;
    {
        Library library;
        library.Add(library.Attach(first), "in the first", 1);
        library.Unload();
        EXPECT_FALSE(library.Loaded());
    }
    Library library;
    CQVUDatabase *const database = library.Attach(second);
    EXPECT_EQ(library.AddRef(database), 2u);
    EXPECT_EQ(library.Add(database, "in the second", 0)->dwID, 2u);
}

TEST(Unload, Nothing_is_written_without_a_persistent_change) {
    TempFolder folder;
    Library library;
    library.Add(library.Attach(folder), "passing", 0);
    library.Unload();
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST(Unload, The_save_flag_is_respected) {
    TempFolder folder;
    Library library;
    CQVUDatabase *const database = library.Attach(folder);
    library.Add(database, "not kept", 1);
    library.SetSaveFlag(database, 0);
    library.Unload();
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST(Unload, After_the_last_Release_there_is_nothing_left_to_do) {
    TempFolder folder;
    Library library;
    CQVUDatabase *const database = library.Attach(folder);
    library.Add(database, "kept", 1);
    EXPECT_EQ(library.Release(database), 0u);
    WriteBytes(folder.DatabaseFile(), BytesOf("marker"));
    library.Unload();
    EXPECT_EQ(ReadBytes(folder.DatabaseFile()), BytesOf("marker"));
}

TEST(Unload, A_library_that_nobody_attached_to_unloads_quietly) {
    Library library;
    EXPECT_TRUE(library.Loaded());
    library.Unload();
    EXPECT_FALSE(library.Loaded());
}
