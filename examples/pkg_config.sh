# shellcheck disable=SC2046  # the options are several words
c++ recognise.cpp $(pkg-config --cflags --libs typescout) -o recognise
