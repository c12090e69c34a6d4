# Fuzz target of the delimited readers. Every build replays the seed corpus
# as a test; with Clang and -DTOLVA_FUZZ=ON a libFuzzer program is built too
# (scripts/fuzz runs it).
option(TOLVA_FUZZ "Build libFuzzer targets (Clang only)" OFF)
set(tolva_fuzz_dir ${CMAKE_CURRENT_LIST_DIR})

add_executable(fuzz_delimited_replay ${tolva_fuzz_dir}/delimited_fuzz.cc ${tolva_fuzz_dir}/replay_main.cc)
target_link_libraries(fuzz_delimited_replay PRIVATE tolva_test_support)
target_compile_options(fuzz_delimited_replay PRIVATE ${TOLVA_WARNINGS})
tolva_add_test(fuzz_delimited_replay fuzz_delimited_replay ${tolva_fuzz_dir}/corpus/delimited)
set_tests_properties(fuzz_delimited_replay PROPERTIES LABELS fuzz TIMEOUT 300)

if(TOLVA_FUZZ AND CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  add_executable(fuzz_delimited ${tolva_fuzz_dir}/delimited_fuzz.cc)
  target_compile_options(fuzz_delimited PRIVATE -fsanitize=fuzzer ${TOLVA_WARNINGS})
  target_link_options(fuzz_delimited PRIVATE -fsanitize=fuzzer)
  target_link_libraries(fuzz_delimited PRIVATE tolva_test_support)
endif()
