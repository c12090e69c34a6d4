# Fuzz targets of the parsers of outside input, one <name>_fuzz.cc and one corpus/<name> folder each.
# Every build replays each corpus as a test; with Clang and -DTOLVA_FUZZ=ON a libFuzzer program
# fuzz_<name> is built too (scripts/fuzz runs it).
option(TOLVA_FUZZ "Build libFuzzer targets (Clang only)" OFF)
set(tolva_fuzz_dir ${CMAKE_CURRENT_LIST_DIR})
if(TOLVA_FUZZ AND CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  # The library and the fakes carry coverage too, or the fuzzer would see
  # only the branches of the target file itself (where the library is built
  # from an object library, that one compiles the sources).
  foreach(compiled tolva-objects tolva tolva_test_support)
    if(TARGET ${compiled})
      target_compile_options(${compiled} PRIVATE -fsanitize=fuzzer-no-link)
    endif()
  endforeach()
endif()

function(tolva_add_fuzz_target name)
  set(source ${tolva_fuzz_dir}/${name}_fuzz.cc)
  add_executable(fuzz_${name}_replay ${source} ${tolva_fuzz_dir}/replay_main.cc)
  target_link_libraries(fuzz_${name}_replay PRIVATE tolva_test_support)
  target_compile_options(fuzz_${name}_replay PRIVATE ${TOLVA_WARNINGS})
  tolva_add_test(fuzz_${name}_replay fuzz_${name}_replay ${tolva_fuzz_dir}/corpus/${name})
  set_tests_properties(fuzz_${name}_replay PROPERTIES LABELS fuzz TIMEOUT 300)
  if(TOLVA_FUZZ AND CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    add_executable(fuzz_${name} ${source})
    target_compile_options(fuzz_${name} PRIVATE -fsanitize=fuzzer ${TOLVA_WARNINGS})
    target_link_options(fuzz_${name} PRIVATE -fsanitize=fuzzer)
    target_link_libraries(fuzz_${name} PRIVATE tolva_test_support)
  endif()
endfunction()

foreach(name delimited ftp_reply ftp_listing profile paths csv_database)
  tolva_add_fuzz_target(${name})
endforeach()
