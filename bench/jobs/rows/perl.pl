# Rows "id;name;amount;flag" into one SQL statement.
use strict;
use warnings;

my ($input, $output) = @ARGV;
open my $in, '<', $input or die "$input: $!";
open my $out, '>', $output or die "$output: $!";
my @rows;
while (<$in>) {
    chomp;
    my @fields = split /;/;
    die "line $.: does not fit" unless @fields == 4;
    push @rows, "    ($fields[0], '$fields[1]', $fields[2], $fields[3])";
}
print $out "INSERT INTO payment (id, name, amount, flag) VALUES\r\n", join(",\r\n", @rows), "\r\n;\r\n";
close $out or die "$output: $!";
