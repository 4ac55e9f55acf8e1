# Ninja runs moc again for headers that moc has seen before. A configuration made anew may be for
# one that it has not: this lets moc look at all of the target's headers once more.
function(moc_new_headers target)
  file(REMOVE "${CMAKE_CURRENT_BINARY_DIR}/${target}_autogen/timestamp")
endfunction()
