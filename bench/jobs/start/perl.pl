# The smallest program that writes a file.
open my $out, '>', $ARGV[1] or die "$ARGV[1]: $!";
print $out "Hello.\r\n";
close $out or die "$ARGV[1]: $!";
