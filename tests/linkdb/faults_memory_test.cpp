// Memory fails at each allocation of an operation in turn, alone and from there on: no
// crash, no leak, and a graph that works on.
#include <functional>
#include <new>

#include "allocations.h"
#include "faults_fixture.h"
#include "graph_compare.h"

namespace {

using Fail = AllocationWatch::Fail;

class FaultsMemory : public testing::Test {
protected:
    TempFolder folder;
    std::string const directory = folder.Directory();
    Bytes const small = SmallGraph();

    FaultsMemory() { WriteBytes(folder.DatabaseFile(), small); }

    // What an operation did under a failure.
    struct Outcome {
        bool failed;  // an allocation was made to fail
        bool threw;   // and the operation threw std::bad_alloc
        bool onwards; // all later ones failed as well
    };
    using Operation = std::function<void()>;
    using Check = std::function<void(CQVUDatabase *, Outcome)>;

    static Outcome Under(Fail fail, std::uint64_t number, Operation const &operation) {
        AllocationWatch const watch(fail, number);
        bool threw = false;
        try {
            operation();
        } catch (std::bad_alloc const &) {
            threw = true;
        }
        return {watch.Failed(), threw, fail == Fail::Onwards};
    }

    // Attaches to the small graph, lets `make` give the operation, and runs it with each
    // failure until there is none left. `check` sees each result.
    void Try(std::function<Operation(CQVUDatabase *)> const &make, Check const &check) {
        for (Fail const fail : {Fail::One, Fail::Onwards}) {
            Once(fail, 1000000, make, check); // what is made once for all is made here
            std::size_t const live = AllocationWatch::LiveBlocks();
            bool failed = true;
            for (std::uint64_t number = 1; failed && !HasFailure(); ++number) {
                SCOPED_TRACE(testing::Message()
                             << "allocation " << number << (fail == Fail::One ? "" : " and on"));
                failed = Once(fail, number, make, check);
                EXPECT_EQ(AllocationWatch::LiveBlocks(), live) << "a leak";
            }
        }
    }

private:
    bool Once(Fail fail, std::uint64_t number, std::function<Operation(CQVUDatabase *)> const &make,
              Check const &check) {
        WriteBytes(folder.DatabaseFile(), small);
        CQVUDatabase *database = nullptr;
        Under(Fail::None, 0, [&] { database = AttachDatabase(directory.c_str()); });
        Outcome const outcome = Under(fail, number, make(database));
        check(database, outcome);
        EXPECT_TRUE(IsSound(database));
        EXPECT_TRUE(WorksOn(database, folder));
        database->SetSaveFlag(0);
        database->Release();
        return outcome.failed;
    }
};

CQVUObject *At(CQVUDatabase *database, unsigned long id) {
    return static_cast<CQVUObject *>(database->LookupObject(id));
}

constexpr std::uint32_t anyType = 0xffffffff;

} // namespace

TEST_F(FaultsMemory, AttachDatabase_gives_null_or_a_database_and_works_the_next_time) {
    Session(folder).Release();
    for (Fail const fail : {Fail::One, Fail::Onwards}) {
        std::size_t const live = AllocationWatch::LiveBlocks();
        bool failed = true;
        for (std::uint64_t number = 1; failed && !HasFailure(); ++number) {
            SCOPED_TRACE(number);
            CQVUDatabase *database = nullptr;
            Outcome const outcome =
                Under(fail, number, [&] { database = AttachDatabase(directory.c_str()); });
            failed = outcome.failed;
            EXPECT_FALSE(outcome.threw);
            if (database) {
                for (unsigned long id = 0; id < 20; ++id)
                    if (CQVUObject *const object = At(database, id)) {
                        LinksFrom(object);
                        LinksTo(object);
                        NameOf(object);
                    }
                EXPECT_EQ(database->Release(), 0u);
            }
            EXPECT_EQ(AllocationWatch::LiveBlocks(), live) << "a leak";
            EXPECT_EQ(ReadBytes(folder.DatabaseFile()), small);
            Session session(folder);
            EXPECT_TRUE(SameGraph(session.Get(), model::Graph::Load(small, OwnStamp())));
        }
    }
}

TEST_F(FaultsMemory, A_database_that_loaded_with_failures_can_be_written_and_taken_apart) {
    Session(folder).Release();
    int withoutFileName = 0; // its allocation failed: such a database writes nothing
    std::size_t const live = AllocationWatch::LiveBlocks();
    bool failed = true;
    for (std::uint64_t number = 1; failed && !HasFailure(); ++number) {
        SCOPED_TRACE(number);
        WriteBytes(folder.DatabaseFile(), small);
        CQVUDatabase *database = nullptr;
        failed =
            Under(Fail::One, number, [&] { database = AttachDatabase(directory.c_str()); }).failed;
        if (!database)
            continue;
        database->AddObject("any", OBJ_FILE, 0, 0, nullptr, 0);
        std::filesystem::remove(folder.DatabaseFile());
        database->Flush();
        if (std::filesystem::exists(folder.DatabaseFile())) {
            EXPECT_TRUE(image::Read(ReadBytes(folder.DatabaseFile())).has_value());
        } else {
            ++withoutFileName;
        }
        for (unsigned long id = 0; id < 20; ++id)
            database->DeleteObject(id);
        database->SetSaveFlag(0);
        database->Release();
        EXPECT_EQ(AllocationWatch::LiveBlocks(), live) << "a leak";
    }
    EXPECT_LE(withoutFileName, 1);
}

TEST_F(FaultsMemory, AddObject_gives_null_or_an_object_perhaps_nameless) {
    bool nameless = false, spent = false;
    CQVUObject *made = nullptr;
    Try(
        [&](CQVUDatabase *database) {
            return [&, database] {
                made = nullptr;
                made = database->AddObject("a name that is longer than any short string is",
                                           OBJ_FILE, 7, 24, nullptr, persistent);
            };
        },
        [&](CQVUDatabase *database, Outcome outcome) {
            if (!outcome.failed) {
                ASSERT_NE(made, nullptr);
                EXPECT_NE(made->pszName, nullptr);
            }
            if (made) {
                EXPECT_EQ(made->dwID, 7u);
                EXPECT_EQ(made->dwFlags, 7u);
                EXPECT_EQ(made->dwDataSize, 24u);
                EXPECT_EQ(made->dwType, OBJ_FILE | PERSISTENT_BIT);
                nameless = nameless || !made->pszName;
            } else {
                CQVUObject *const next = database->AddObject("next", OBJ_FILE, 0, 0, nullptr, 0);
                EXPECT_TRUE(next->dwID == 7 || next->dwID == 8);
                spent = spent || next->dwID == 8;
            }
        });
    EXPECT_TRUE(nameless) << "a failure of the name leaves the object without one";
    EXPECT_TRUE(spent) << "a failure of the data spends the id";
}

TEST_F(FaultsMemory, AddObject_marks_a_change_before_any_allocation) {
    CQVUDatabase *const database = AttachDatabase(directory.c_str());
    Under(Fail::Onwards, 1, [&] {
        EXPECT_EQ(database->AddObject("name", OBJ_FILE, 0, 1u << 20, nullptr, persistent), nullptr);
    });
    PlaceMarker(folder);
    database->Release();
    EXPECT_FALSE(MarkerStands(folder));
}

TEST_F(FaultsMemory, LinkTo_gives_0_and_no_link_or_1_and_one_that_may_lack_entries) {
    struct {
        unsigned long source, target;
    } const rows[] = {{4, 4}, {2, 3}, {3, 5}, {6, 3}, {6, 4}};
    for (auto const &row : rows) {
        SCOPED_TRACE(row.source * 10 + row.target);
        int result = -1;
        Try(
            [&](CQVUDatabase *database) {
                return [&, database] {
                    result = 0;
                    result = At(database, row.source)->LinkTo(At(database, row.target), 0x100);
                };
            },
            [&](CQVUDatabase *database, Outcome outcome) {
                EXPECT_TRUE(outcome.failed || result == 1);
                EXPECT_EQ(database->LookupLink(13) != nullptr, result == 1);
                if (outcome.failed)
                    return;
                EXPECT_EQ(LinksFrom(At(database, row.source)).back() & LINK_ENTRY_ID_MASK, 13u);
                EXPECT_EQ(LinksTo(At(database, row.target)).back() & LINK_ENTRY_ID_MASK, 13u);
            });
    }
}

TEST_F(FaultsMemory, The_tenth_and_eleventh_entry_of_a_list) {
    for (unsigned long const already : {1ul, 2ul}) {
        SCOPED_TRACE(already);
        Try(
            [&](CQVUDatabase *database) {
                for (unsigned long i = 1; i < already; ++i)
                    At(database, 6)->LinkTo(At(database, 4), 0x200);
                return [database] { At(database, 6)->LinkTo(At(database, 4), 0x100); };
            },
            [&](CQVUDatabase *database, Outcome outcome) {
                std::uint32_t const count = At(database, 6)->dwLinksFrom & LINK_ENTRY_ID_MASK;
                EXPECT_TRUE(count == 9 + already || (outcome.failed && count == 8 + already));
            });
    }
}

TEST_F(FaultsMemory, MakePersistent_and_deletions_need_no_memory) {
    std::function<void(CQVUDatabase *)> const onDatabase[] = {
        [](CQVUDatabase *database) { EXPECT_EQ(At(database, 6)->MakePersistent(), 1); },
        [](CQVUDatabase *database) { EXPECT_EQ(At(database, 4)->MakePersistent(), 1); },
        [](CQVUDatabase *database) { EXPECT_EQ(database->DeleteLink(4, 1, 1), 1); },
        [](CQVUDatabase *database) { EXPECT_EQ(database->DeleteObject(5), 1); }};
    std::function<void(model::Graph &)> const onModel[] = {
        [](model::Graph &graph) { graph.MakePersistent(6); },
        [](model::Graph &graph) { graph.MakePersistent(4); },
        [](model::Graph &graph) { graph.DeleteLink(4, true, true); },
        [](model::Graph &graph) { graph.DeleteObject(5); }};
    for (std::size_t i = 0; i < std::size(onModel); ++i)
        Try([&](CQVUDatabase *database) { return [&, database] { onDatabase[i](database); }; },
            [&](CQVUDatabase *database, Outcome outcome) {
                model::Graph graph = model::Graph::Load(small, OwnStamp());
                onModel[i](graph);
                EXPECT_FALSE(outcome.threw);
                EXPECT_TRUE(SameGraph(database, graph));
            });
}

TEST_F(FaultsMemory, SetName_leaves_the_new_name_or_none) {
    std::string name(100, 'n');
    Try(
        [&](CQVUDatabase *database) {
            return [&, database] { EXPECT_EQ(At(database, 3)->SetName(name.data()), 1); };
        },
        [&](CQVUDatabase *database, Outcome outcome) {
            EXPECT_FALSE(outcome.threw);
            char const *const stored = At(database, 3)->pszName;
            EXPECT_TRUE(stored ? stored == name : outcome.failed);
        });
}

TEST_F(FaultsMemory, SetData_gives_0_and_no_data_or_1_and_the_new_data) {
    Bytes data(100, 0x11);
    int result = -1;
    Try(
        [&](CQVUDatabase *database) {
            return [&, database] { result = At(database, 6)->SetData(100, data.data()); };
        },
        [&](CQVUDatabase *database, Outcome outcome) {
            EXPECT_FALSE(outcome.threw);
            EXPECT_EQ(result, outcome.failed ? 0 : 1);
            EXPECT_EQ(DataOf(At(database, 6)), outcome.failed ? Bytes() : data);
            EXPECT_EQ(At(database, 6)->pData == nullptr, outcome.failed);
        });
}

TEST_F(FaultsMemory, MakeNewLink_gives_null_or_a_link) {
    DBLink *made = nullptr;
    Try(
        [&](CQVUDatabase *database) {
            return [&, database] {
                made = nullptr;
                made = database->MakeNewLink(2, 3, 8, persistent);
            };
        },
        [&](CQVUDatabase *database, Outcome outcome) {
            EXPECT_TRUE(made || outcome.failed);
            EXPECT_EQ(database->LookupLink(13), made);
        });
}

TEST_F(FaultsMemory, Object_searches_give_nothing_or_the_match) {
    char pattern[] = "b.d?*";
    SearchHandle handle = 0;
    CQVUObject *found = nullptr;
    Try(
        [&](CQVUDatabase *database) {
            return [&, database] {
                handle = database->FindFirstObject(pattern, anyType, &found);
                if (handle) {
                    EXPECT_EQ(database->FindNextObject(handle, &found), 1);
                    EXPECT_EQ(found->dwID, 5u);
                }
                database->FindCloseObject(handle);
            };
        },
        [&](CQVUDatabase *, Outcome outcome) {
            EXPECT_FALSE(outcome.threw);
            EXPECT_TRUE(handle != 0 || outcome.failed);
        });
}

TEST_F(FaultsMemory, Link_searches_pass_over_an_entry_whose_search_cannot_be_made) {
    CQVULink *link = nullptr;
    SearchHandle handle = 0;
    Try(
        [&](CQVUDatabase *database) {
            return [&, database] {
                handle = At(database, 6)->FindFirstLinkFrom(anyType, &link);
                At(database, 6)->FindCloseLinkFrom(handle);
            };
        },
        [&](CQVUDatabase *, Outcome outcome) {
            EXPECT_FALSE(outcome.threw);
            EXPECT_TRUE(handle != 0 || outcome.failed);
            if (handle) {
                EXPECT_EQ(link->dwID, outcome.failed ? 5u : 4u);
            }
        });
}

TEST_F(FaultsMemory, Paths_are_found_and_told_or_not) {
    char path[1000] = "";
    CQVUObject *found = nullptr;
    Try(
        [&](CQVUDatabase *database) {
            return [&, database] {
                found = database->GetObjectByPath("C:\\a.exe");
                EXPECT_TRUE(!found || found->GetFullPath(path) == 0 ||
                            path == std::string("C:\\a.exe"));
                found = At(database, 4)->Resolve(path);
            };
        },
        [&](CQVUDatabase *, Outcome outcome) { EXPECT_FALSE(outcome.threw); });
}

TEST_F(FaultsMemory, Expansions_give_a_part_of_the_results_and_leave_no_mark) {
    for (bool const backwards : {false, true}) {
        unsigned long count = 0;
        Try(
            [&](CQVUDatabase *database) {
                return [&, database] {
                    count = 0;
                    CQVUObject *out = nullptr, *const start = At(database, backwards ? 3 : 2);
                    SearchHandle const handle =
                        backwards ? start->FindFirstReferencingApp(&out, nullptr)
                                  : start->FindFirstDependentObject(&out, nullptr);
                    if (!handle)
                        return;
                    do
                        ++count;
                    while (start->FindNextDependentObject(handle, &out, nullptr));
                    start->FindCloseDependentObject(handle);
                };
            },
            [&](CQVUDatabase *, Outcome outcome) {
                EXPECT_FALSE(outcome.threw);
                EXPECT_TRUE(count <= 3 && (count > 0 || outcome.failed));
            });
    }
}

TEST_F(FaultsMemory, Flush_leaves_the_old_file_or_the_new_one_and_no_temporary) {
    Bytes expected;
    Try(
        [&](CQVUDatabase *database) {
            database->AddObject("new", OBJ_FILE, 0, 0, nullptr, persistent);
            model::Graph graph = model::Graph::Load(small, OwnStamp());
            graph.AddObject("new", OBJ_FILE, 0, {}, true);
            expected = *graph.Flush(OwnStamp());
            return [database] { database->Flush(); };
        },
        [&](CQVUDatabase *, Outcome outcome) {
            EXPECT_FALSE(outcome.threw);
            Bytes const now = ReadBytes(folder.DatabaseFile());
            EXPECT_TRUE(now == expected || (outcome.failed && now == small));
            // Without any memory it can't even be deleted; it is in nobody's way.
            EXPECT_TRUE(outcome.onwards || !std::filesystem::exists(folder.TemporaryFile()));
        });
}

TEST_F(FaultsMemory, Release_destroys_the_instance_whatever_fails) {
    std::size_t const live = AllocationWatch::LiveBlocks();
    bool failed = true;
    for (std::uint64_t number = 1; failed && !HasFailure(); ++number) {
        CQVUDatabase *database = nullptr;
        Under(Fail::None, 0, [&] {
            database = AttachDatabase(directory.c_str());
            database->AddObject("new", OBJ_FILE, 0, 0, nullptr, persistent);
        });
        Outcome const outcome =
            Under(Fail::Onwards, number, [&] { EXPECT_EQ(database->Release(), 0u); });
        failed = outcome.failed;
        EXPECT_FALSE(outcome.threw);
        EXPECT_EQ(AllocationWatch::LiveBlocks(), live) << "a leak";
        EXPECT_TRUE(image::Read(ReadBytes(folder.DatabaseFile())).has_value());
    }
}
