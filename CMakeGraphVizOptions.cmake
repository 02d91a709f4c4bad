# What `cmake --graphviz` draws: the project's own libraries and programs,
# without tests, benchmarks, generated resource objects or outside libraries.
set(GRAPHVIZ_EXTERNAL_LIBS FALSE)
set(GRAPHVIZ_GENERATE_PER_TARGET FALSE)
set(GRAPHVIZ_GENERATE_DEPENDERS FALSE)
set(GRAPHVIZ_IGNORE_TARGETS "_tests$" "_bench$" "^tessaly_test" "^db_writer$" "_resources_" "_other_files$" "^Fuzz" "_fuzzer$" "symbol_libraries" "_autogen")
