# dev: build with g++, run every test
need fish zsh  # for the completion scripts
build_and_test dev
